#pragma once

#include "docker/DockerContainer.h"
#include "docker/DockerImage.h"
#include "models/LocalModel.h"

#include <QString>

#include <vector>

namespace zentrill {

/// The order in which a list shows its records. Equal records stay in the order of the scan.
enum class ListOrder {
    asScanned,
    /// Records without a known size come last.
    largestFirst,
    /// Without regard to case; numbers within names count as numbers.
    byName,
};

/// What of a list is shown, and how.
struct Arrangement {
    ListOrder order = ListOrder::asScanned;
    /// What the names of the shown records contain, without regard to case; if empty, all are shown.
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

/// Whether `left` comes before `right`; both in lower case.
[[nodiscard]] bool isNameBefore(QStringView left, QStringView right);

} // namespace zentrill
