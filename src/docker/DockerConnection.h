#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace zentrill {

/// The daemon endpoint that a scan used. Every record of that scan keeps it, so that a later removal
/// addresses the same daemon even if the user has switched contexts.
struct DockerConnection {
    /// Global options placed before every subcommand: "--context" and a name, or "--host" and an address.
    std::vector<std::string> arguments;
    /// The context's name, or "DOCKER_HOST override".
    std::string displayName;

    bool operator==(const DockerConnection&) const = default;
};

} // namespace zentrill

template <>
struct std::hash<zentrill::DockerConnection> {
    [[nodiscard]] std::size_t operator()(const zentrill::DockerConnection& connection) const;
};
