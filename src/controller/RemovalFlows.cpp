#include "controller/RemovalFlows.h"

#include "controller/FreeSpaceMeter.h"
#include "docker/DockerContainerCommands.h"
#include "docker/DockerDataRoot.h"
#include "docker/DockerImageRemovalService.h"
#include "models/ModelDeletionService.h"
#include "models/OllamaStore.h"

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

ResultOutcome outcomeOf(bool succeeded) {
    return succeeded ? ResultOutcome::complete : ResultOutcome::errors;
}

ResultAlert report(const OperationContext& context, const Titles& titles, ResultOutcome outcome,
                   std::string message) {
    context.log(message);
    return {.title = outcome == ResultOutcome::complete ? titles.success : titles.failure,
            .message = std::move(message),
            .outcome = outcome,
            .retainedPathCount = 0};
}

/// Watches what goes with the model, as far as that is known.
void watchModel(const LocalModel& model, FreeSpaceMeter& meter) {
    meter.watchItem(model.path);
    if (model.source == ollamaSource) {
        for (const std::string& blob : OllamaStore(model.path).blobs()) {
            meter.watchItem(blob);
        }
    }
}

/// Watches the folder where the engine keeps what it removes, if it is on this machine.
void watchEngine(const DockerConnection& connection, FreeSpaceMeter& meter) {
    if (const std::optional<std::string> root = localDockerDataRoot(connection)) {
        meter.watchFolder(*root);
    }
}

ResultAlert withFreeSpace(ResultAlert alert, const FreeSpaceMeter& meter) {
    alert.freeSpace = meter.text();
    return alert;
}

ResultAlert reportMissingCLI(const OperationContext& context, const Titles& titles) {
    return report(context, titles, ResultOutcome::errors, "Docker CLI is no longer available.");
}

std::string failureMessage(const char* action, const DockerContainer& container,
                           const CommandResult& result) {
    return std::string("Could not ") + action + " " + container.name + ": " + result.diagnostic();
}

} // namespace

ResultAlert deleteModel(const OperationContext& context, const LocalModel& model) {
    const ModelDeletionService service(context.commandRunner, context.deletionEngine);
    FreeSpaceMeter meter;
    watchModel(model, meter);
    ModelDeletionResult result = service.deleteModel(model.name, model.source, model.path);
    ResultAlert alert = report(context, {.success = "Model Deleted", .failure = "Model Deletion Failed"},
                               outcomeOf(result.succeeded), std::move(result.message));
    // A failed deletion may have removed a part.
    return result.succeeded || context.hasRemoved() ? withFreeSpace(std::move(alert), meter)
                                                    : std::move(alert);
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
        return report(context, titles, ResultOutcome::errors, failureMessage("stop", container, stopped));
    }
    return report(context, titles, ResultOutcome::complete, "Stopped " + container.name + ".");
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
            return report(context, titles, ResultOutcome::errors, failureMessage("stop", container, stopped));
        }
    }
    FreeSpaceMeter meter;
    watchEngine(container.connection, meter);
    const CommandResult removed =
        context.commandRunner->run(*docker, commands::remove(container), commands::timeout);
    if (!removed.succeeded()) {
        return report(context, titles, ResultOutcome::errors, failureMessage("remove", container, removed));
    }
    return withFreeSpace(report(context, titles, ResultOutcome::complete, "Removed " + container.name + "."),
                         meter);
}

ResultAlert removeDockerImage(const OperationContext& context, const DockerImage& image) {
    constexpr Titles titles{.success = "Docker Image Removed", .failure = "Image Removal Failed"};
    const std::optional<std::string> docker = context.dockerLocator->locate();
    if (!docker) {
        return reportMissingCLI(context, titles);
    }
    FreeSpaceMeter meter;
    if (image.usage == DockerImageUsage::unused) {
        watchEngine(image.connection, meter);
    }
    DockerImageRemovalResult result = DockerImageRemovalService(context.commandRunner).remove(image, *docker);
    ResultAlert alert = report(context, titles, outcomeOf(result.succeeded), std::move(result.message));
    return result.succeeded ? withFreeSpace(std::move(alert), meter) : alert;
}

} // namespace zentrill
