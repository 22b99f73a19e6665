#include "docker/DockerImageRemovalService.h"

#include <chrono>
#include <optional>
#include <utility>

namespace zentrill {

namespace {

constexpr CommandExecuting::Timeout removalTimeout = std::chrono::seconds(45);

/// Why the image must not be removed, or nothing.
std::optional<std::string> refusal(const DockerImage& image) {
    if (!isFullImageID(image.imageID)) {
        return "The selected Docker image ID is invalid; it was not removed.";
    }
    switch (image.usage) {
    case DockerImageUsage::unused:
        return std::nullopt;
    case DockerImageUsage::inUse:
        return "Image " + image.imageID + " is used by a container; it was not removed.";
    case DockerImageUsage::unknown:
        break;
    }
    return "Image " + image.imageID + " has unknown container usage; it was not removed.";
}

} // namespace

DockerImageRemovalService::DockerImageRemovalService(std::shared_ptr<CommandExecuting> commands)
    : commands_(std::move(commands)) {}

DockerImageRemovalResult DockerImageRemovalService::remove(const DockerImage& image,
                                                           const std::string& executablePath) const {
    if (std::optional<std::string> reason = refusal(image)) {
        return {.succeeded = false, .message = std::move(*reason)};
    }
    std::vector<std::string> arguments = image.connection.arguments;
    // "--" ends the options; without force, Docker itself refuses an image taken into use since the scan.
    arguments.insert(arguments.end(), {"image", "rm", "--", image.imageID});
    const CommandResult result = commands_->run(executablePath, arguments, removalTimeout);
    if (!result.succeeded()) {
        return {.succeeded = false,
                .message = "Docker refused to remove " + image.imageID + ": " + result.diagnostic()};
    }
    return {.succeeded = true, .message = "Removed Docker image " + image.imageID + "."};
}

} // namespace zentrill
