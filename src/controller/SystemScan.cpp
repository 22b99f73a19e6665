#include "controller/SystemScan.h"

#include "catalog/ApplicationDetectionRegistry.h"
#include "catalog/InstallationDetector.h"
#include "controller/HomePathExpander.h"
#include "controller/OperationQueue.h"
#include "docker/DockerScanner.h"
#include "models/LocalModelScanner.h"
#include "platform/HomeDirectory.h"
#include "platform/WorkerThread.h"

#include <algorithm>
#include <future>
#include <iterator>
#include <utility>

namespace zentrill {

namespace {

/// Rules name their paths unexpanded.
std::vector<std::string> expanded(std::vector<std::string> paths, const PathExpander& expand) {
    std::ranges::transform(paths, paths.begin(), expand);
    return paths;
}

void scanApplications(const OperationContext& context, ScanSnapshot& snapshot) {
    const InstallationDetector detector;
    const PathExpander expand = homePathExpander();
    snapshot.apps = context.apps;
    for (AppInfo& app : snapshot.apps) {
        const ApplicationDetectionRule& rule = ApplicationDetectionRegistry::rule(app.name);
        const InstallationPresence presence = detector.presence(rule, expand);
        app.isDetected = presence != InstallationPresence::absent;
        app.hasResidualData = presence == InstallationPresence::residualData;
        if (presence == InstallationPresence::installed) {
            context.log("Found software: " + app.displayName + " (" + std::string(rawValue(app.category)) +
                        ")");
            const std::vector<std::string> paths = expanded(rule.installedPaths, expand);
            const auto found = std::ranges::find_if(paths, detector.installedPathExists);
            if (found != paths.end()) {
                snapshot.installedPaths.emplace(app.name, *found);
            }
        } else if (presence == InstallationPresence::residualData) {
            context.log("Found remaining configuration/data for " + app.displayName +
                        "; no installation executable was detected.");
            snapshot.remainingPaths.emplace(
                app.name, detector.existingPaths(expanded(rule.scanResidualDataPaths(), expand)));
        }
    }
}

void append(std::vector<LocalModel>& all, std::vector<LocalModel> more) {
    all.insert(all.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

std::vector<LocalModel> scanModels(const OperationContext& context) {
    const LocalModelScanner scanner(homeDirectory(), context.log, context.isAbandoned);
    std::vector<LocalModel> models = scanner.scanOllamaModels();
    append(models, scanner.scanHuggingFaceModels());
    append(models, scanner.scanLMStudioModels());
    return models;
}

} // namespace

ScanSnapshot collectScan(const OperationContext& context) {
    const auto scanDocker = [scanner = DockerScanner(context.commandRunner, context.dockerLocator),
                             await = context.awaitFirstFrame] {
        beginWorkerThread(OperationQueue::label);
        if (await) {
            await();
        }
        return scanner.scan();
    };
    // Docker mostly keeps its caller waiting. Its scan logs nothing and shares no changing data with the
    // rest. Without a policy the libraries start a thread or, if they cannot, make the call in `get`.
    std::future<DockerAvailability> docker = std::async(scanDocker);
    ScanSnapshot snapshot;
    scanApplications(context, snapshot);
    snapshot.models = scanModels(context);
    snapshot.docker = docker.get();
    return snapshot;
}

} // namespace zentrill
