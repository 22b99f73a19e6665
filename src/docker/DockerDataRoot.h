#pragma once

#include "docker/DockerConnection.h"

#include <optional>
#include <string>

namespace zentrill {

/// The folder in which the engine of a connection keeps images and containers, where that is known to be one
/// of this machine: the connection is the socket of the machine's own engine, and the folder is there. An
/// engine in a virtual machine, whose socket may have the same name, has its folder elsewhere.
///
/// No command is asked, since a removal does not wait for what only its report tells. `configuration` is the
/// file of the engine that may name another folder than its default.
[[nodiscard]] std::optional<std::string>
localDockerDataRoot(const DockerConnection& connection,
                    const std::string& configuration = "/etc/docker/daemon.json");

} // namespace zentrill
