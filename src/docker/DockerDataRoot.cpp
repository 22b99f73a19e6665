#include "docker/DockerDataRoot.h"

#include "platform/FileSystem.h"

#include <nlohmann/json.hpp>

#include <fstream>
#include <string_view>
#include <vector>

namespace zentrill {

namespace {

constexpr std::string_view defaultRoot = "/var/lib/docker";

/// Whether the connection is the socket that the system's service listens at.
bool isMachinesOwn(const DockerConnection& connection) {
    using Arguments = std::vector<std::string>;
    return connection.arguments == Arguments{"--context", "default"} ||
           connection.arguments == Arguments{"--host", "unix:///var/run/docker.sock"} ||
           connection.arguments == Arguments{"--host", "unix:///run/docker.sock"};
}

std::string configuredRoot(const std::string& configuration) {
    std::ifstream file(configuration);
    const auto settings = nlohmann::json::parse(file, nullptr, false);
    if (settings.is_object()) {
        const auto root = settings.find("data-root");
        if (root != settings.end() && root->is_string()) {
            return root->get<std::string>();
        }
    }
    return std::string(defaultRoot);
}

} // namespace

std::optional<std::string> localDockerDataRoot(const DockerConnection& connection,
                                               const std::string& configuration) {
    if (!isMachinesOwn(connection)) {
        return std::nullopt;
    }
    std::string root = configuredRoot(configuration);
    if (!root.starts_with('/') || !FileSystem::shared().itemExistsWithoutFollowingSymlink(root)) {
        return std::nullopt;
    }
    return root;
}

} // namespace zentrill
