#include "deletion/ApplicationUninstallService.h"

#include "catalog/ApplicationDetectionRegistry.h"
#include "deletion/PathOwners.h"
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
        // A listing that is cut short cannot rule out that a tool runs.
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
    deleteEntries(rule, safetyShield(preserveCredentials), pathExpander, cancellation, abandonment, result);
    result.remainingDataPaths = detector_.existingPaths(expanded(rule.scanResidualDataPaths(), pathExpander));
    result.presence = detector_.presence(rule, pathExpander);
    if (result.presence == InstallationPresence::installed) {
        result.deletionReport.failures.push_back(rule.name +
                                                 " still has installed runtime evidence after cleanup.");
    }
    return result;
}

void ApplicationUninstallService::deleteEntries(const ApplicationDetectionRule& rule, SafetyShield shield,
                                                const PathExpander& pathExpander,
                                                const CancellationCheck& cancellation,
                                                const AbandonmentCheck& abandonment,
                                                ApplicationUninstallResult& result) const {
    DeletionReport& report = result.deletionReport;
    const auto goesOn = [&] {
        if (cancellation() || abandonment()) {
            result.cancelled = true;
            report.failures.emplace_back(ApplicationUninstallResult::cancelledMessage);
            return false;
        }
        return true;
    };
    forEachTarget(rule, shield, pathExpander, goesOn,
                  [&](const std::string& target, const DeletionOptions& options, bool /*isInstalledPath*/) {
                      report.merge(deletion_->deleteItem(target, options));
                  });
}

void ApplicationUninstallService::forEachTarget(const ApplicationDetectionRule& rule, SafetyShield shield,
                                                const PathExpander& pathExpander,
                                                const std::function<bool()>& goesOn,
                                                const TargetVisitor& visit) {
    const bool isShielded = shield == SafetyShield::on;
    DeletionOptions options{.preserveCredentials = isShielded,
                            .explicitCredentialPaths = expanded(rule.credentialPaths, pathExpander),
                            .preserveUnrecognized = false};
    for (const std::string& entry : rule.uninstallPaths) {
        if (!goesOn()) {
            return;
        }
        const bool isInstalledPath =
            std::ranges::find(rule.installedPaths, entry) != rule.installedPaths.end();
        options.preserveUnrecognized = isShielded && !isInstalledPath;
        for (const std::string& target : uninstallTargets(entry, pathExpander(entry))) {
            visit(target, options, isInstalledPath);
        }
    }
}

ApplicationUninstallPlan ApplicationUninstallService::plan(const ApplicationDetectionRule& rule,
                                                           SafetyShield shield,
                                                           const PathExpander& pathExpander,
                                                           const PlanOptions& options) const {
    using Part = ApplicationUninstallPlan::Part;
    ApplicationUninstallPlan result;
    EarlierPlans own;
    PlanOptions inOrder = options;
    inOrder.earlier = options.earlier != nullptr ? options.earlier : &own;
    const auto goesOn = [&] {
        result.stopped = result.stopped || (options.shouldStop && options.shouldStop());
        return !result.stopped;
    };
    const auto visit = [&](const std::string& target, const DeletionOptions& how, bool isInstalledPath) {
        DeletionPlan plan = result.stopped ? DeletionPlan() : deletion_->plan(target, how, inOrder);
        if (plan.isEmpty()) {
            return;
        }
        result.stopped = plan.stopped;
        const std::int64_t counted = plan.logicalBytes();
        // The plan does not look into what the shield keeps whole.
        const bool isKeptWhole = counted == 0 && !plan.itemGoes && !plan.stopped;
        result.items.push_back(
            {.path = target,
             .part = isInstalledPath ? Part::installation : Part::data,
             .logicalBytes = isKeptWhole ? sizeOf(target, options, nullptr, result.stopped) : counted,
             .plan = std::move(plan)});
    };
    forEachTarget(rule, shield, pathExpander, goesOn, visit);
    if (goesOn()) {
        planRemainingData(rule, pathExpander, inOrder, result);
    }
    const PathOwners owners(ApplicationDetectionRegistry::rules(), pathExpander);
    for (ApplicationUninstallPlan::Item& item : result.items) {
        item.sharedWith = owners.othersThan(rule.name, item.path);
    }
    result.staysInstalled =
        std::ranges::any_of(expanded(rule.installedPaths, pathExpander), [&](const std::string& path) {
            return detector_.installedPathExists(path) && !inOrder.earlier->removes(path);
        });
    return result;
}

void ApplicationUninstallService::planRemainingData(const ApplicationDetectionRule& rule,
                                                    const PathExpander& pathExpander,
                                                    const PlanOptions& options,
                                                    ApplicationUninstallPlan& plan) const {
    for (const std::string& path : expanded(rule.residualDataPaths, pathExpander)) {
        if (plan.stopped || !detector_.residualPathExists(path) || options.earlier->covers(path)) {
            continue;
        }
        if (options.progress) {
            options.progress(path, {});
        }
        // Nothing is deleted here, so the later plans must not count it.
        EarlierPlans earlier = *options.earlier;
        plan.items.push_back({.path = path,
                              .part = ApplicationUninstallPlan::Part::remainingData,
                              .logicalBytes = sizeOf(path, options, &earlier, plan.stopped)});
    }
}

std::int64_t ApplicationUninstallService::sizeOf(const std::string& path, PlanOptions options,
                                                 EarlierPlans* earlier, bool& stopped) const {
    options.listedItems = 0;
    options.earlier = earlier;
    options.progress = nullptr;
    const DeletionPlan whole = deletion_->plan(path, {}, options);
    stopped = whole.stopped;
    return whole.logicalBytes();
}

} // namespace zentrill
