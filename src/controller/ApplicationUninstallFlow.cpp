#include "controller/ApplicationUninstallFlow.h"

#include "catalog/ApplicationDetectionRegistry.h"
#include "catalog/InstallationDetector.h"
#include "controller/ApplicationUninstallNotice.h"
#include "controller/FreeSpaceMeter.h"
#include "controller/HomePathExpander.h"
#include "deletion/ApplicationUninstallService.h"
#include "deletion/UninstallTargets.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <string_view>
#include <utility>

namespace zentrill {

namespace {

/// The only tool whose package manager has to remove it before its files go.
constexpr std::string_view npmInstalledName = "Claude Code";
constexpr CommandExecuting::Timeout npmTimeout{45.0};
constexpr const char* cancelledMessage = ApplicationUninstallResult::cancelledMessage;

/// The services' results for all applications so far.
struct Tally {
    std::size_t appCount = 0;
    std::size_t removedCount = 0;
    std::map<std::string, std::vector<std::string>> remainingData;
    std::vector<std::string> failures;
    bool cancelled = false;

    void add(const std::string& name, ApplicationUninstallResult result) {
        ++appCount;
        removedCount += result.deletionReport.removed.size();
        cancelled = cancelled || result.cancelled;
        if (!result.remainingDataPaths.empty()) {
            remainingData[name] = std::move(result.remainingDataPaths);
        }
        std::ranges::move(result.deletionReport.failures, std::back_inserter(failures));
    }

    /// Tools share folders, so the next one may have removed what one had to leave.
    void dropWhatIsGone(const InstallationDetector& detector) {
        for (auto& [name, paths] : remainingData) {
            paths = detector.existingPaths(std::move(paths));
        }
        std::erase_if(remainingData, [](const auto& entry) { return entry.second.empty(); });
    }

    [[nodiscard]] std::int64_t remainingPathCount() const {
        std::size_t count = 0;
        for (const auto& [name, paths] : remainingData) {
            count += paths.size();
        }
        return static_cast<std::int64_t>(count);
    }
};

void watchTargets(const AppInfo& app, FreeSpaceMeter& meter) {
    const PathExpander expand = homePathExpander();
    for (const std::string& entry : ApplicationDetectionRegistry::rule(app.name).uninstallPaths) {
        for (const std::string& target : uninstallTargets(entry, expand(entry))) {
            meter.watchItem(target);
        }
    }
}

void removeNpmPackage(const OperationContext& context, const AppInfo& app) {
    context.log("Running 'npm uninstall -g @anthropic-ai/claude-code'...");
    const CommandResult result = context.commandRunner->run(
        "/usr/bin/env", {"npm", "uninstall", "-g", "@anthropic-ai/claude-code"}, npmTimeout);
    if (!result.succeeded()) {
        context.log(app.name + " package cleanup: " + result.diagnostic());
    }
}

ApplicationUninstallResult uninstall(const OperationContext& context, const AppInfo& app,
                                     bool preserveCredentials) {
    context.log("Uninstalling: " + app.name);
    if (app.name == npmInstalledName) {
        removeNpmPackage(context, app);
    }
    // Closing the window also ends the process listing, and an empty listing would mean that nothing runs.
    const auto isAlive = [listed =
                              ApplicationUninstallService::liveProcessAliveChecker(context.commandRunner),
                          isAbandoned = context.isAbandoned](const std::vector<std::string>& names) {
        return listed(names) || isAbandoned();
    };
    const ApplicationUninstallService service(context.deletionEngine, InstallationDetector(), isAlive);
    ApplicationUninstallResult result =
        service.uninstall(ApplicationDetectionRegistry::rule(app.name), preserveCredentials,
                          homePathExpander(), context.isCancelled, context.isAbandoned);
    for (const std::string& path : result.deletionReport.preserved) {
        context.log(std::string(preservedPathMark) + path);
    }
    return result;
}

} // namespace

std::vector<AppInfo> detectedSelection(const std::vector<AppInfo>& apps) {
    std::vector<AppInfo> selection;
    std::ranges::copy_if(apps, std::back_inserter(selection),
                         [](const AppInfo& app) { return app.isDetected && app.isSelected; });
    return selection;
}

ResultAlert uninstallApps(const OperationContext& context, const std::vector<AppInfo>& targets,
                          bool preserveCredentials) {
    Tally tally;
    FreeSpaceMeter meter;
    for (const AppInfo& app : targets) {
        watchTargets(app, meter);
    }
    for (const AppInfo& app : targets) {
        if (context.isAbandoned() || context.isCancelled()) {
            break;
        }
        tally.add(app.name, uninstall(context, app, preserveCredentials));
    }
    const std::string freeSpace = context.hasRemoved() ? meter.text() : std::string();
    // Applications that were not begun are missing from the results, so the report has to say why.
    if (tally.appCount < targets.size() && !tally.cancelled) {
        tally.cancelled = true;
        tally.failures.emplace_back(cancelledMessage);
    }
    if (tally.cancelled) {
        context.log(cancelledMessage);
    }
    tally.dropWhatIsGone(InstallationDetector());

    const ApplicationUninstallNotice notice(tally.removedCount, tally.appCount, tally.remainingData,
                                            tally.failures);
    return {.title = notice.title,
            .message = notice.message,
            .outcome = applicationOutcome(tally.failures, tally.remainingData),
            .retainedPathCount = tally.remainingPathCount(),
            .retainedPaths = notice.remainingPaths,
            .freeSpace = freeSpace};
}

} // namespace zentrill
