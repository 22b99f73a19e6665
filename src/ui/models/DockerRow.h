#pragma once

#include "docker/DockerContainer.h"
#include "docker/DockerImage.h"
#include "ui/models/Arrangement.h"

#include <QString>

#include <string>
#include <variant>
#include <vector>

namespace zentrill {

/// The line above the containers or the images, with their number.
struct DockerHeading {
    enum class Section { containers, images };

    Section section = Section::containers;
    std::size_t count = 0;

    [[nodiscard]] QString text() const;

    bool operator==(const DockerHeading&) const = default;
};

/// A sentence among the records.
struct DockerRemark {
    enum class Kind {
        /// How the sizes of images are to be read.
        notice,
        /// A doubt that the scan has left.
        warning,
        noContainers,
        noImages,
    };

    Kind kind = Kind::notice;
    QString text;

    bool operator==(const DockerRemark&) const = default;
};

/// One line of the Docker pane, which shows headings, remarks, containers and images in one list.
using DockerRow = std::variant<DockerHeading, DockerRemark, DockerContainer, DockerImage>;

/// Unique within the list and the same for the same object in every scan.
[[nodiscard]] std::string dockerRowKey(const DockerRow& row);

/// Whether the line has actions, so that the keyboard stops at it.
[[nodiscard]] bool isDockerStop(const DockerRow& row);

/// The whole list: containers under their count, images under theirs. `warning` may be null. The counts are
/// those of all records, even if the arrangement hides some.
[[nodiscard]] std::vector<DockerRow> dockerRows(const std::vector<DockerContainer>& containers,
                                                const std::vector<DockerImage>& images,
                                                const QString& warning, const Arrangement& arrangement = {});

} // namespace zentrill
