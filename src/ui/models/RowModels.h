#pragma once

#include "catalog/AppInfo.h"
#include "models/LocalModel.h"
#include "ui/models/DockerRow.h"
#include "ui/models/RecordListModel.h"

#include <memory>

namespace zentrill {

using ApplicationListModel = RecordListModel<AppInfo>;
using LocalModelListModel = RecordListModel<LocalModel>;
using DockerListModel = RecordListModel<DockerRow>;

/// The models of the three lists with the roles that their rows show.
[[nodiscard]] std::unique_ptr<ApplicationListModel> makeApplicationListModel();
[[nodiscard]] std::unique_ptr<LocalModelListModel> makeLocalModelListModel();
[[nodiscard]] std::unique_ptr<DockerListModel> makeDockerListModel();

/// "Data remains", "Installed" or "Not found".
[[nodiscard]] QString applicationStatusText(const AppInfo& application);

/// The category, and how the tool is usually installed where that is known: "Terminal / CLI Tool · via …".
[[nodiscard]] QString applicationOrigin(const AppInfo& application);

/// The icon of the selection mark: ticked, empty, or crossed out for what cannot be selected.
[[nodiscard]] QString applicationMarkIcon(const AppInfo& application);

} // namespace zentrill
