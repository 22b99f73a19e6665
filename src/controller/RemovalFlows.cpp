#include "controller/RemovalFlows.h"

#include "docker/DockerContainerCommands.h"
#include "docker/DockerImageRemovalService.h"
#include "models/ModelDeletionService.h"

#include <optional>
#include <string>
#include <utility>

namespace zentrill {

namespace {

namespace commands = docker_container_commands;

struct Titles {
    const char* success;
    const char* failure;
};

ResultAlert report(const OperationContext& context, const Titles& titles, bool succeeded,
                   std::string message) {
    context.log(message);
    return {.title = succeeded ? titles.success : titles.failure,
            .message = std::move(message),
            .outcome = succeeded ? ResultOutcome::complete : ResultOutcome::errors,
            .retainedPathCount = 0};
}

ResultAlert reportMissingCLI(const OperationContext& context, const Titles& titles) {
    return report(context, titles, false, "Docker CLI is no longer available.");
}

std::string failureMessage(const char* action, const DockerContainer& container,
                           const CommandResult& result) {
    return std::string("Could not ") + action + " " + container.name + ": " + result.diagnostic();
}

} // namespace

ResultAlert deleteModel(const OperationContext& context, const LocalModel& model) {
    const ModelDeletionService service(context.commandRunner, *context.deletionEngine);
    ModelDeletionResult result = service.deleteModel(model.name, model.source, model.path);
    return report(context, {.success = "Model Deleted", .failure = "Model Deletion Failed"}, result.succeeded,
                  std::move(result.message));
}

ResultAlert stopContainer(const OperationContext& context, const DockerContainer& container) {
    constexpr Titles titles{.success = "Container Stopped", .failure = "Stop Failed"};
    const std::optional<std::string> docker = context.dockerLocator->locate();
    if (!docker) {
        return reportMissingCLI(context, titles);
    }
    const CommandResult stopped =
        context.commandRunner->run(*docker, commands::stop(container), commands::timeout);
    if (!stopped.succeeded()) {
        return report(context, titles, false, failureMessage("stop", container, stopped));
    }
    return report(context, titles, true, "Stopped " + container.name + ".");
}

ResultAlert removeContainer(const OperationContext& context, const DockerContainer& container) {
    constexpr Titles titles{.success = "Container Removed", .failure = "Removal Failed"};
    const std::optional<std::string> docker = context.dockerLocator->locate();
    if (!docker) {
        return reportMissingCLI(context, titles);
    }
    if (container.isRunning()) {
        const CommandResult stopped =
            context.commandRunner->run(*docker, commands::stop(container), commands::timeout);
        if (!stopped.succeeded()) {
            return report(context, titles, false, failureMessage("stop", container, stopped));
        }
    }
    const CommandResult removed =
        context.commandRunner->run(*docker, commands::remove(container), commands::timeout);
    if (!removed.succeeded()) {
        return report(context, titles, false, failureMessage("remove", container, removed));
    }
    return report(context, titles, true, "Removed " + container.name + ".");
}

ResultAlert removeDockerImage(const OperationContext& context, const DockerImage& image) {
    constexpr Titles titles{.success = "Docker Image Removed", .failure = "Image Removal Failed"};
    const std::optional<std::string> docker = context.dockerLocator->locate();
    if (!docker) {
        return reportMissingCLI(context, titles);
    }
    DockerImageRemovalResult result = DockerImageRemovalService(context.commandRunner).remove(image, *docker);
    return report(context, titles, result.succeeded, std::move(result.message));
}

} // namespace zentrill
