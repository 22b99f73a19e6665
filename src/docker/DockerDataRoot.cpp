#include "docker/DockerDataRoot.h"

#include "docker/DockerListing.h"

#include <chrono>
#include <string_view>
#include <vector>

#include <sys/utsname.h>

namespace zentrill {

namespace {

/// It is for a line of a report, so nobody is kept waiting for it.
constexpr CommandExecuting::Timeout patience = std::chrono::seconds(3);

std::string endpoint(CommandExecuting& commands, const std::string& executablePath,
                     const DockerConnection& connection) {
    if (connection.arguments.size() != 2) {
        return {};
    }
    if (connection.arguments.front() == "--host") {
        return connection.arguments.back();
    }
    const CommandResult inspected = commands.run(
        executablePath,
        {"context", "inspect", "--format", "{{.Endpoints.docker.Host}}", connection.arguments.back()},
        patience);
    return inspected.succeeded() ? std::string(docker_listing::trimmed(inspected.stdout)) : std::string();
}

std::string nameOfThisMachine() {
    utsname machine{};
    return ::uname(&machine) == 0 ? std::string(static_cast<const char*>(machine.nodename)) : std::string();
}

} // namespace

std::optional<std::string> localDockerDataRoot(CommandExecuting& commands, const std::string& executablePath,
                                               const DockerConnection& connection) {
    if (!endpoint(commands, executablePath, connection).starts_with("unix://")) {
        return std::nullopt;
    }
    std::vector<std::string> arguments = connection.arguments;
    arguments.insert(arguments.end(), {"info", "--format", "{{.Name}} {{.DockerRootDir}}"});
    const CommandResult info = commands.run(executablePath, arguments, patience);
    const std::string_view answer = docker_listing::trimmed(info.stdout);
    const std::size_t space = answer.find(' ');
    if (!info.succeeded() || space == std::string_view::npos ||
        answer.substr(0, space) != nameOfThisMachine() || !answer.substr(space + 1).starts_with('/')) {
        return std::nullopt;
    }
    return std::string(answer.substr(space + 1));
}

} // namespace zentrill
