#pragma once

#include "catalog/ApplicationDetectionRule.h"
#include "catalog/InstallationDetector.h"
#include "catalog/PathExpander.h"
#include "deletion/ApplicationUninstallPlan.h"
#include "deletion/ApplicationUninstallResult.h"
#include "deletion/EarlierPlans.h"
#include "deletion/SafeDeletionEngine.h"
#include "deletion/SafetyShield.h"
#include "process/CommandExecuting.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace zentrill {

/// Removes one catalogued tool: refuses while it runs, deletes what its rule lists, then looks at what is
/// left. Holds no state between calls.
///
///     const ApplicationUninstallService service(engine);
///     const auto result = service.uninstall(rule, preserveCredentials, expandHome, cancelled);
class ApplicationUninstallService {
public:
    /// Whether any process of these names runs.
    using ProcessAliveChecker = std::function<bool(const std::vector<std::string>& processNames)>;

    /// Whether the user has cancelled.
    using CancellationCheck = std::function<bool()>;

    /// Whether nobody needs the result any more, because the window has been closed.
    using AbandonmentCheck = std::function<bool()>;

    explicit ApplicationUninstallService(
        std::shared_ptr<const SafeDeletionEngine> deletion = std::make_shared<const SafeDeletionEngine>(),
        InstallationDetector detector = InstallationDetector(),
        ProcessAliveChecker processAliveChecker = liveProcessAliveChecker());

    /// Looks for the names anywhere in the process listing, case-sensitively: a process whose arguments
    /// merely mention a name counts, because a needless refusal costs less than a missing one. Without names
    /// nothing is listed. A listing that fails counts as empty.
    [[nodiscard]] static ProcessAliveChecker
    liveProcessAliveChecker(std::shared_ptr<CommandExecuting> commands);

    /// The same over the system's own process listing.
    [[nodiscard]] static ProcessAliveChecker liveProcessAliveChecker();

    /// `preserveCredentials` is the Safety Shield. With it on, data folders keep every file that is not
    /// recognised as safe to delete; executables and bundles lose all but credentials. `cancellation` and
    /// `abandonment` are asked before each entry of the rule; either one's "yes" leaves the rest as it is,
    /// and the result is `cancelled`. Problems are told in the report's failures.
    [[nodiscard]] ApplicationUninstallResult uninstall(
        const ApplicationDetectionRule& rule, bool preserveCredentials, const PathExpander& pathExpander,
        const CancellationCheck& cancellation = [] { return false; },
        const AbandonmentCheck& abandonment = [] { return false; }) const;

    /// What `uninstall` would do, without changing anything. It does not ask whether the tool runs: that
    /// starts a program, and only the answer at the time of the removal counts. When several tools are to be
    /// removed in a row, `options.earlier` names the plans before this one. Of data that stay,
    /// `options.progress` hears the path alone, before they are sized.
    [[nodiscard]] ApplicationUninstallPlan plan(const ApplicationDetectionRule& rule, SafetyShield shield,
                                                const PathExpander& pathExpander,
                                                const PlanOptions& options = {}) const;

private:
    /// Receives one target of an uninstall entry and how to delete it.
    using TargetVisitor =
        std::function<void(const std::string& target, const DeletionOptions& options, bool isInstalledPath)>;

    /// Visits the targets in the order of the removal. An entry is expanded when its turn comes; `goesOn` is
    /// asked before each one.
    static void forEachTarget(const ApplicationDetectionRule& rule, SafetyShield shield,
                              const PathExpander& pathExpander, const std::function<bool()>& goesOn,
                              const TargetVisitor& visit);

    void deleteEntries(const ApplicationDetectionRule& rule, SafetyShield shield,
                       const PathExpander& pathExpander, const CancellationCheck& cancellation,
                       const AbandonmentCheck& abandonment, ApplicationUninstallResult& result) const;

    void planRemainingData(const ApplicationDetectionRule& rule, const PathExpander& pathExpander,
                           const PlanOptions& options, ApplicationUninstallPlan& plan) const;
    /// The size of everything at `path`, in bytes; `stopped` says whether `options` ended the count.
    [[nodiscard]] std::int64_t sizeOf(const std::string& path, PlanOptions options, EarlierPlans* earlier,
                                      bool& stopped) const;

    std::shared_ptr<const SafeDeletionEngine> deletion_;
    InstallationDetector detector_;
    ProcessAliveChecker processAliveChecker_;
};

} // namespace zentrill
