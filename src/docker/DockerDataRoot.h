#pragma once

#include "docker/DockerConnection.h"
#include "process/CommandExecuting.h"

#include <optional>
#include <string>

namespace zentrill {

/// The folder in which the engine of a connection keeps images and containers, where that is a folder of this
/// machine for certain: the connection is a socket of the machine, and the engine calls its host by this
/// machine's name. One in a virtual machine, such as Docker Desktop's, has its folder elsewhere.
///
/// Blocks for as long as the tool at `executablePath` takes, a few seconds at most.
[[nodiscard]] std::optional<std::string> localDockerDataRoot(CommandExecuting& commands,
                                                             const std::string& executablePath,
                                                             const DockerConnection& connection);

} // namespace zentrill
