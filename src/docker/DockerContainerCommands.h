#pragma once

#include "docker/DockerContainer.h"
#include "process/CommandExecuting.h"

#include <chrono>
#include <string>
#include <vector>

/// The commands that stop and remove a container, through the endpoint that listed it and never by force.
namespace zentrill::docker_container_commands {

constexpr CommandExecuting::Timeout timeout = std::chrono::seconds(30);

/// Arguments of the `docker` tool.
[[nodiscard]] std::vector<std::string> stop(const DockerContainer& container);
[[nodiscard]] std::vector<std::string> remove(const DockerContainer& container);

} // namespace zentrill::docker_container_commands
