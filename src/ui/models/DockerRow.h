#pragma once

#include "docker/DockerContainer.h"
#include "docker/DockerImage.h"
#include "ui/models/Arrangement.h"

#include <QString>

#include <string>
#include <variant>
#include <vector>

namespace zentrill {

/// Stands above the containers or the images, with their number.
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
        /// What the scan could not find out.
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

/// Whether there is something to do with the line, so that the keyboard stops at it.
[[nodiscard]] bool isDockerStop(const DockerRow& row);

/// The whole list: containers under their count, images under theirs. A null `warning` is none. The counts
/// are those of all records, whatever the arrangement shows of them.
[[nodiscard]] std::vector<DockerRow> dockerRows(const std::vector<DockerContainer>& containers,
                                                const std::vector<DockerImage>& images,
                                                const QString& warning, const Arrangement& arrangement = {});

} // namespace zentrill
