#pragma once

#include "docker/DockerContainer.h"
#include "docker/DockerImage.h"

#include <optional>
#include <string>
#include <vector>

namespace zentrill {

/// One line of the Docker pane, which shows headings, remarks, containers and images in one list.
struct DockerRow {
    enum class Kind { heading, notice, warning, empty, container, image };

    Kind kind = Kind::notice;
    /// The container's ID, the image's ID, or a name of this line's own.
    std::string recordID;
    /// What the line says: a heading, a remark, the name of a container, the title of an image.
    std::string text;
    /// The container's image or the image's short ID.
    std::string detail;
    /// The container's status or the image's size.
    std::string status;
    std::string usage;
    /// A container that runs, an image in use.
    bool isActive = false;

    /// Unique within the list and the same for the same object in every scan.
    [[nodiscard]] std::string id() const;

    /// Whether there is something to do with the line, so that the keyboard stops at it.
    [[nodiscard]] bool isStop() const noexcept { return kind == Kind::container || kind == Kind::image; }

    bool operator==(const DockerRow&) const = default;
};

/// The whole list: containers under their count, images under theirs.
[[nodiscard]] std::vector<DockerRow> dockerRows(const std::vector<DockerContainer>& containers,
                                                const std::vector<DockerImage>& images,
                                                const std::optional<std::string>& warning);

} // namespace zentrill
