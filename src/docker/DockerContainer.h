#pragma once

#include "docker/DockerConnection.h"

#include <cstddef>
#include <functional>
#include <string>

namespace zentrill {

/// One container as the scan listed it. Its identity is `id`.
struct DockerContainer {
    std::string id;
    std::string name;
    std::string image;
    /// Docker's own text, such as "Up 3 minutes" or "Exited (0) 2 hours ago".
    std::string status;
    DockerConnection connection;

    [[nodiscard]] bool isRunning() const noexcept;

    bool operator==(const DockerContainer&) const = default;
};

/// One line of the container listing; it is shown as it was read.
using DockerRecord = DockerContainer;

} // namespace zentrill

template <>
struct std::hash<zentrill::DockerContainer> {
    [[nodiscard]] std::size_t operator()(const zentrill::DockerContainer& container) const;
};
