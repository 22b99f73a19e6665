#include "truth/PlanComparison.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <set>
#include <vector>

#include <sys/stat.h>

namespace zentrill::test {

namespace {

/// The items that went, by comparing the disk before and after.
std::set<std::string> goneItems(const TrialDeletion& trial) {
    std::set<std::string> gone;
    for (const auto& [path, item] : trial.before()) {
        if (!trial.after().contains(path)) {
            gone.insert(path);
        }
    }
    return gone;
}

/// Without the shield the deletion tries folders that it must not read, and finds those out that are empty.
/// No plan can know.
bool hidesAnEmptyFolder(const TrialDeletion& trial) {
    return !trial.isShielded() && std::ranges::any_of(trial.before(), [&trial](const auto& entry) {
        const auto& [path, item] = entry;
        const auto next = trial.before().lower_bound(path + "/");
        const bool empty = next == trial.before().end() || !next->first.starts_with(path + "/");
        return item.isDirectory() && (item.mode & S_IRUSR) == 0 && empty;
    });
}

/// Each reason's list has the report's order, and together they are the report's list.
bool areTogether(const std::vector<std::string>& whole, const DeletionPlan& plan) {
    const std::array<const std::vector<DeletionPlan::Item>*, 3> parts{
        &plan.recognizedCredentials.listed, &plan.listedCredentials.listed, &plan.uncertainData.listed};
    std::array<std::size_t, 3> next{};
    for (const std::string& path : whole) {
        bool found = false;
        for (std::size_t i = 0; i < parts.size() && !found; ++i) {
            found = next[i] < parts[i]->size() && (*parts[i])[next[i]].path == path;
            next[i] += found ? 1 : 0;
        }
        if (!found) {
            return false;
        }
    }
    return next == std::array{parts[0]->size(), parts[1]->size(), parts[2]->size()};
}

/// Logical sizes of what went, each file once.
std::int64_t bytesOf(const TrialDeletion& trial, const std::set<std::string>& gone) {
    std::set<ino_t> counted;
    std::int64_t bytes = 0;
    for (const std::string& path : gone) {
        const DiskItem& item = trial.before().at(path);
        if (!item.isDirectory() && counted.insert(item.inode).second) {
            bytes += static_cast<std::int64_t>(item.content.size());
        }
    }
    return bytes;
}

} // namespace

std::optional<std::string> comparePlan(const TrialDeletion& trial) {
    const DeletionPlan& plan = trial.plan();
    const DeletionReport& report = trial.report();
    const std::set<std::string> gone = goneItems(trial);
    std::set<std::string> planned;
    for (const DeletionPlan::Item& item : plan.removed.listed) {
        if (!planned.insert(trial.asOnDisk(item.path)).second) {
            return "planned to go twice: " + item.path;
        }
        if (item.isFolder != trial.before().at(trial.asOnDisk(item.path)).isDirectory()) {
            return "planned as what it is not: " + item.path;
        }
    }
    if (plan.removed.count != plan.removed.listed.size()) {
        return "the plan's count is not that of its paths";
    }
    if (!areTogether(report.preserved, plan)) {
        return "the plan keeps something else than the report";
    }
    if (hidesAnEmptyFolder(trial)) {
        return std::ranges::includes(gone, planned) ? std::nullopt
                                                    : std::optional<std::string>("planned to go, but there");
    }
    if (planned != gone) {
        return "the plan and the disk disagree on what goes";
    }
    if (trial.isShielded() &&
        !std::ranges::equal(plan.removed.listed, report.removed, {}, &DeletionPlan::Item::path)) {
        return "the plan and the report disagree on what goes";
    }
    if (plan.failures != report.failures) {
        return "the plan and the report disagree on what fails";
    }
    if (plan.itemGoes != gone.contains(trial.item())) {
        return "the plan and the disk disagree on the item";
    }
    if (plan.removed.logicalBytes != bytesOf(trial, gone)) {
        return "the plan's bytes are not those of what went";
    }
    return std::nullopt;
}

} // namespace zentrill::test
