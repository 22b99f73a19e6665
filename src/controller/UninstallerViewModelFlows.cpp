// The destructive operations of the controller: how each begins, what the worker does for it and how it ends.

#include "controller/ApplicationUninstallFlow.h"
#include "controller/RemovalFlows.h"
#include "controller/SelfUninstallFlow.h"
#include "controller/UninstallerViewModel.h"
#include "deletion/SelfUninstallService.h"
#include "platform/HomeDirectory.h"

#include <memory>
#include <utility>

namespace zentrill {

namespace {

constexpr const char* uninstallStartLine = "=== Starting Application Uninstallation ===";

/// The identifier for people: shortened if it is a digest, otherwise unchanged.
std::string displayedID(const DockerImage& image) {
    return image.imageID.starts_with("sha256:") ? image.shortID() : image.imageID;
}

} // namespace

void UninstallerViewModel::uninstallSelectedApps() {
    if (!beginOperation("Preparing uninstallation\u2026", {.cancellable = true})) {
        return;
    }
    log(uninstallStartLine);
    submit([preserve = preserveCredentials_](const OperationContext& context) -> Completion {
        const std::vector<AppInfo> targets = detectedSelection(context.apps);
        if (!targets.empty()) {
            return rescan(context, uninstallApps(context, targets, preserve));
        }
        return [](UninstallerViewModel& controller) {
            controller.endOperation();
            controller.log("No applications selected for uninstallation.");
        };
    });
}

void UninstallerViewModel::uninstallAppsFromConfirmation(const std::vector<AppInfo>& apps,
                                                         bool preserveCredentials) {
    if (!beginOperation("Uninstalling " + std::to_string(apps.size()) + " application(s)",
                        {.cancellable = true})) {
        return;
    }
    log(uninstallStartLine);
    submitThenRescan([apps, preserveCredentials](const OperationContext& context) {
        return uninstallApps(context, apps, preserveCredentials);
    });
}

void UninstallerViewModel::deleteModel(const LocalModel& model) {
    if (!beginOperation("Deleting " + model.name, {})) {
        return;
    }
    log("Deleting local model: " + model.name + " (" + model.source + ", " + model.sizeFormatted() + ")");
    submitThenRescan(
        [model](const OperationContext& context) { return zentrill::deleteModel(context, model); });
}

void UninstallerViewModel::stopContainer(const DockerContainer& container) {
    if (!beginOperation("Stopping " + container.name, {})) {
        return;
    }
    log("Stopping Docker container: " + container.name + " (" + container.id + ")...");
    submitThenRescan(
        [container](const OperationContext& context) { return zentrill::stopContainer(context, container); });
}

void UninstallerViewModel::removeContainer(const DockerContainer& container) {
    if (!beginOperation("Removing " + container.name, {})) {
        return;
    }
    log("Removing Docker container: " + container.name + " (" + container.id + ")...");
    submitThenRescan([container](const OperationContext& context) {
        return zentrill::removeContainer(context, container);
    });
}

void UninstallerViewModel::removeDockerImage(const DockerImage& image) {
    if (!beginOperation("Removing Docker image " + displayedID(image), {})) {
        return;
    }
    log("Removing Docker image: " + displayedID(image) + " from " + image.connection.displayName);
    submitThenRescan(
        [image](const OperationContext& context) { return zentrill::removeDockerImage(context, image); });
}

void UninstallerViewModel::performSelfUninstall() {
    if (!beginOperation("Uninstalling Zentrill", {})) {
        return;
    }
    hooks_.forgetWindowState();
    const std::string bundle = hooks_.bundleLocation();
    const std::string home = homeDirectory();
    log("Removing Zentrill bundle and owned application data...");
    submit([bundle, home, more = hooks_.additionalOwnedData](const OperationContext& context) -> Completion {
        const SelfUninstallService service(SelfUninstallService::defaultBundleIdentifier, std::nullopt,
                                           FileSystem::shared(), context.deletionEngine, more);
        return [result = service.uninstall(bundle, home)](UninstallerViewModel& controller) {
            if (result.succeeded()) {
                controller.hooks_.exitProcess();
                return;
            }
            controller.endOperation();
            controller.showResult(selfUninstallFailure(result));
        };
    });
}

OperationContext UninstallerViewModel::operationContext() const {
    OperationContext context;
    context.commandRunner = commandRunner_;
    context.deletionEngine =
        std::make_shared<const SafeDeletionEngine>(deletionEngine_->tellingTo(deletionProgress_));
    context.deletionProgress = deletionProgress_;
    context.dockerLocator = dockerLocator_;
    context.awaitFirstFrame = hooks_.awaitFirstFrame;
    context.apps = apps_;
    context.log = [link = mainQueue_](const std::string& message) {
        link->postLine(LogClock::roomFor(message));
    };
    context.isAbandoned = [link = mainQueue_] { return !link->isOpen(); };
    context.isCancelled = [link = mainQueue_, token = cancellationToken_] {
        return link->isOpen() && token->isCancelled();
    };
    return context;
}

void UninstallerViewModel::submitThenRescan(AlertingBody body) {
    submit([body = std::move(body)](const OperationContext& context) {
        ResultAlert alert = body(context);
        return rescan(context, std::move(alert));
    });
}

} // namespace zentrill
