#pragma once

#include "docker/DockerContainer.h"
#include "docker/DockerImage.h"
#include "models/LocalModel.h"

#include <QString>

#include <vector>

namespace zentrill {

/// In which order a list shows its records. What is equal in it stays as it was scanned.
enum class ListOrder {
    asScanned,
    /// What has no size that is known comes last.
    largestFirst,
    /// Whatever the case of letters; numbers within names count as numbers.
    byName,
};

/// What of a list is shown, and how.
struct Arrangement {
    ListOrder order = ListOrder::asScanned;
    /// Part of the name of what is shown, whatever the case of letters; everything is where this is empty.
    QString needle;

    bool operator==(const Arrangement&) const = default;
};

[[nodiscard]] std::vector<LocalModel> arranged(const std::vector<LocalModel>& models,
                                               const Arrangement& arrangement);

/// Images are found by their tags, and by their short ID.
[[nodiscard]] std::vector<DockerImage> arranged(const std::vector<DockerImage>& images,
                                                const Arrangement& arrangement);

/// Containers have no size: they are found, by name or image, and stay in the order of the scan.
[[nodiscard]] std::vector<DockerContainer> arranged(const std::vector<DockerContainer>& containers,
                                                    const Arrangement& arrangement);

/// Whether `left` comes before `right` among names that have no capital letters.
[[nodiscard]] bool isNameBefore(QStringView left, QStringView right);

} // namespace zentrill
