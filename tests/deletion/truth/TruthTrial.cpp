#include "truth/TruthTrial.h"

#include "support/TemporaryDirectory.h"
#include "truth/PlanComparison.h"
#include "truth/ReportComparison.h"
#include "truth/TrialDeletion.h"
#include "truth/TrialRun.h"

#include <cstddef>
#include <vector>

namespace zentrill::test {

namespace {

/// Several threads report what one alone reports of the same tree elsewhere, element by element.
std::optional<std::string> compareOrder(const TrialDeletion& trial, const TrialDeletion& alone) {
    const auto moved = [&](std::vector<std::string> list) {
        for (std::string& text : list) {
            for (std::size_t at = 0; (at = text.find(alone.base(), at)) != std::string::npos;) {
                text.replace(at, alone.base().size(), trial.base());
            }
        }
        return list;
    };
    const DeletionReport& report = alone.report();
    if (trial.report() != DeletionReport{.removed = moved(report.removed),
                                         .preserved = moved(report.preserved),
                                         .failures = moved(report.failures)}) {
        return "one thread reports another order:\n  " + trial.description() + "  alone:\n  " +
               alone.description();
    }
    return std::nullopt;
}

} // namespace

std::optional<std::string> runTruthTrial(std::uint64_t seed, const std::string& folder) {
    const TemporaryDirectory base(folder);
    TrialDeletion trial(seed, base.path());
    trial.run();
    if (std::optional<std::string> complaint = compareReport(trial)) {
        return complaint;
    }
    if (const std::optional<std::string> complaint = comparePlan(trial)) {
        return *complaint + "\n  " + trial.description();
    }
    if (trial.concurrency().threads == 1 || (!trial.isShielded() && trial.report().succeeded())) {
        return std::nullopt;
    }
    const TemporaryDirectory otherBase(folder);
    TrialDeletion alone(seed, otherBase.path());
    alone.run(DeletionConcurrency{});
    return compareOrder(trial, alone);
}

std::optional<std::string> runTruthTrials(std::uint64_t firstSeed, std::uint64_t count) {
    return runTrials(firstSeed, count, runTruthTrial);
}

} // namespace zentrill::test
