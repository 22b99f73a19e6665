#include "deletion/ApplicationUninstallService.h"

#include "deletion/UninstallTargets.h"
#include "process/ShellCommandRunner.h"

#include <algorithm>
#include <utility>

namespace zentrill {

namespace {

constexpr CommandExecuting::Timeout processListingTimeout{5.0};

std::vector<std::string> expanded(std::vector<std::string> paths, const PathExpander& pathExpander) {
    std::ranges::transform(paths, paths.begin(), pathExpander);
    return paths;
}

} // namespace

ApplicationUninstallService::ApplicationUninstallService(std::shared_ptr<const SafeDeletionEngine> deletion,
                                                         InstallationDetector detector,
                                                         ProcessAliveChecker processAliveChecker)
    : deletion_(std::move(deletion)),
      detector_(std::move(detector)),
      processAliveChecker_(std::move(processAliveChecker)) {}

ApplicationUninstallService::ProcessAliveChecker
ApplicationUninstallService::liveProcessAliveChecker(std::shared_ptr<CommandExecuting> commands) {
    return [commands = std::move(commands)](const std::vector<std::string>& processNames) {
        if (processNames.empty()) {
            return false;
        }
        const CommandResult listing = commands->run("/bin/ps", {"-axo", "comm,args="}, processListingTimeout);
        if (!listing.succeeded()) {
            return false;
        }
        // One that is not whole cannot rule out that a tool runs.
        return !listing.stdoutIsWhole || std::ranges::any_of(processNames, [&](const std::string& name) {
            return listing.stdout.find(name) != std::string::npos;
        });
    };
}

ApplicationUninstallService::ProcessAliveChecker ApplicationUninstallService::liveProcessAliveChecker() {
    return liveProcessAliveChecker(std::make_shared<ShellCommandRunner>());
}

ApplicationUninstallResult ApplicationUninstallService::uninstall(const ApplicationDetectionRule& rule,
                                                                  bool preserveCredentials,
                                                                  const PathExpander& pathExpander,
                                                                  const CancellationCheck& cancellation,
                                                                  const AbandonmentCheck& abandonment) const {
    ApplicationUninstallResult result;
    if (processAliveChecker_(rule.processNames)) {
        result.deletionReport.failures.push_back(rule.name + " is currently running. Quit " + rule.name +
                                                 " before removing it.");
        result.presence = InstallationPresence::installed;
        return result;
    }
    result.deletionReport = deleteEntries(rule, preserveCredentials, pathExpander, cancellation, abandonment);
    result.remainingDataPaths = detector_.existingPaths(expanded(rule.scanResidualDataPaths(), pathExpander));
    result.presence = detector_.presence(rule, pathExpander);
    if (result.presence == InstallationPresence::installed) {
        result.deletionReport.failures.push_back(rule.name +
                                                 " still has installed runtime evidence after cleanup.");
    }
    return result;
}

DeletionReport ApplicationUninstallService::deleteEntries(const ApplicationDetectionRule& rule,
                                                          bool preserveCredentials,
                                                          const PathExpander& pathExpander,
                                                          const CancellationCheck& cancellation,
                                                          const AbandonmentCheck& abandonment) const {
    DeletionReport report;
    DeletionOptions options{.preserveCredentials = preserveCredentials,
                            .explicitCredentialPaths = expanded(rule.credentialPaths, pathExpander),
                            .preserveUnrecognized = false};
    for (const std::string& entry : rule.uninstallPaths) {
        if (cancellation() || abandonment()) {
            report.failures.emplace_back("Operation cancelled.");
            break;
        }
        const bool isInstalledPath =
            std::ranges::find(rule.installedPaths, entry) != rule.installedPaths.end();
        options.preserveUnrecognized = preserveCredentials && !isInstalledPath;
        for (const std::string& target : uninstallTargets(entry, pathExpander(entry))) {
            report.merge(deletion_->deleteItem(target, options));
        }
    }
    return report;
}

} // namespace zentrill
