#include "controller/SystemScan.h"

#include "catalog/ApplicationDetectionRegistry.h"
#include "catalog/InstallationDetector.h"
#include "controller/HomePathExpander.h"
#include "docker/DockerScanner.h"
#include "models/LocalModelScanner.h"
#include "platform/HomeDirectory.h"

#include <iterator>
#include <utility>

namespace zentrill {

namespace {

std::vector<AppInfo> scanApplications(const OperationContext& context) {
    const InstallationDetector detector;
    const PathExpander expand = homePathExpander();
    std::vector<AppInfo> apps = context.apps;
    for (AppInfo& app : apps) {
        const InstallationPresence presence =
            detector.presence(ApplicationDetectionRegistry::rule(app.name), expand);
        app.isDetected = presence != InstallationPresence::absent;
        app.hasResidualData = presence == InstallationPresence::residualData;
        if (presence == InstallationPresence::installed) {
            context.log("Found software: " + app.displayName + " (" + std::string(rawValue(app.category)) +
                        ")");
        } else if (presence == InstallationPresence::residualData) {
            context.log("Found remaining configuration/data for " + app.displayName +
                        "; no installation executable was detected.");
        }
    }
    return apps;
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
    ScanSnapshot snapshot;
    snapshot.apps = scanApplications(context);
    snapshot.models = scanModels(context);
    snapshot.docker = DockerScanner(context.commandRunner, context.dockerLocator).scan();
    return snapshot;
}

} // namespace zentrill
