#include "docker/DockerContainerCommands.h"

namespace zentrill::docker_container_commands {

namespace {

std::vector<std::string> command(const DockerContainer& container, const std::string& verb) {
    std::vector<std::string> arguments = container.connection.arguments;
    arguments.insert(arguments.end(), {"container", verb, container.id});
    return arguments;
}

} // namespace

std::vector<std::string> stop(const DockerContainer& container) {
    return command(container, "stop");
}

std::vector<std::string> remove(const DockerContainer& container) {
    return command(container, "rm");
}

} // namespace zentrill::docker_container_commands
