#pragma once

#include "controller/review/ReviewRow.h"
#include "controller/review/ReviewStage.h"
#include "deletion/ApplicationUninstallPlan.h"
#include "docker/DockerContainer.h"
#include "docker/DockerImage.h"
#include "models/ModelDeletionPlan.h"

#include <QString>

#include <cstdint>
#include <string>
#include <vector>

/// Plans as the lines of a review. `tool` keeps the keys of several tools apart.
namespace zentrill::review_rows {

/// "412 bytes", "1.5 KB", "850 MB", "4.66 GB".
[[nodiscard]] QString sizeText(std::int64_t bytes);

/// One item of a tool: itself, then its entries by what becomes of them, kept ones first. While the
/// plan is under way it has no size and no fate yet.
void append(std::vector<ReviewRow>& rows, const std::string& tool, const ApplicationUninstallPlan::Item& item,
            ReviewStage stage);

/// A model at `path`.
[[nodiscard]] std::vector<ReviewRow> ofModel(const std::string& path, const ModelDeletionPlan& plan,
                                             ReviewStage stage);
[[nodiscard]] std::vector<ReviewRow> ofContainer(const DockerContainer& container);
[[nodiscard]] std::vector<ReviewRow> ofImage(const DockerImage& image);

[[nodiscard]] ReviewRow remark(const std::string& key, const QString& text);

} // namespace zentrill::review_rows
