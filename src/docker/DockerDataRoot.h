#pragma once

#include "docker/DockerConnection.h"

#include <optional>
#include <string>

namespace zentrill {

/// The folder in which the engine of a connection keeps images and containers, if it is known to be on this
/// machine: the connection is the socket of the system's engine, and the folder exists. An engine in a
/// virtual machine may have a socket of the same name, but its folder is elsewhere.
///
/// It runs no command, because a removal should not wait for something that only its report shows.
/// `configuration` is the engine's file, which may name another folder than the default.
[[nodiscard]] std::optional<std::string>
localDockerDataRoot(const DockerConnection& connection,
                    const std::string& configuration = "/etc/docker/daemon.json");

} // namespace zentrill
