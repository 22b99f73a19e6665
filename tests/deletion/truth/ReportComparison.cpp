#include "truth/ReportComparison.h"

#include "truth/ExpectedReport.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>
#include <vector>

namespace zentrill::test {

namespace {

/// Compares what a deletion did with what it says and with what it should have done.
class Comparison {
public:
    explicit Comparison(const TrialDeletion& trial) : trial_(trial), expected_(expectedReport(trial)) {}

    std::optional<std::string> run() {
        compareDisk();
        if (expected_.unsafeAncestor) {
            compareRefusal();
        } else {
            compareReport();
        }
        if (complaint_.empty()) {
            return std::nullopt;
        }
        return complaint_ + "\n  " + trial_.description();
    }

private:
    void complain(const std::string& what) {
        if (complaint_.empty()) {
            complaint_ = what;
        }
    }

    void compareReport() {
        for (const std::string& reported : trial_.report().preserved) {
            if (!trial_.after().contains(trial_.asOnDisk(reported))) {
                complain("reported as preserved, but gone: " + reported);
            }
        }
        if (trial_.isShielded()) {
            compareRemovals();
            compareLists();
        } else {
            compareWholeRemoval();
        }
        if (trial_.before().contains(trial_.item()) &&
            expected_.left != trial_.after().contains(trial_.item())) {
            complain(expected_.left ? "should have stayed" : "should have gone");
        }
    }

    /// What is there now was there before and is unchanged; what must stay is there.
    void compareDisk() {
        for (const auto& [path, item] : trial_.after()) {
            const auto found = trial_.before().find(path);
            if (found == trial_.before().end()) {
                complain("appeared: " + path);
            } else if (found->second != item) {
                complain("changed: " + path);
            }
        }
        for (const auto& [path, item] : trial_.before()) {
            if (trial_.after().contains(path)) {
                continue;
            }
            if (!isAtOrBelow(path, trial_.item())) {
                complain("removed outside of the item: " + path);
            }
            if (trial_.isShielded() && trial_.isCredential(path)) {
                complain("a credential is gone: " + path);
            }
            if (trial_.isShielded() && trial_.options().preserveUnrecognized && !item.isDirectory()) {
                complain("uncertain data is gone: " + path);
            }
            if (std::ranges::any_of(trial_.refused(), [this, &path](const std::string& refused) {
                    return isAtOrBelow(refused, trial_.item()) && isAtOrBelow(path, refused);
                })) {
                complain("removed though the predicate refused: " + path);
            }
        }
    }

    void compareRefusal() {
        if (trial_.after() != trial_.before()) {
            complain("refused, but something changed");
        }
        const std::string message = "Refusing to traverse symlink ancestor: " + *expected_.unsafeAncestor;
        if (trial_.report() != DeletionReport{.removed = {}, .preserved = {}, .failures = {message}}) {
            complain("not refused for " + *expected_.unsafeAncestor);
        }
    }

    /// With the shield everything is listed, once.
    void compareLists() {
        std::vector<std::string> failures;
        for (const std::string& path : expected_.failures) {
            failures.push_back(trial_.asReported(path) + ": Permission denied");
        }
        compareList("removed", trial_.report().removed, reported(expected_.removed));
        compareList("preserved", trial_.report().preserved, reported(expected_.preserved));
        compareList("failures", trial_.report().failures, failures);
    }

    [[nodiscard]] std::vector<std::string> reported(const std::set<std::string>& paths) const {
        std::vector<std::string> result;
        for (const std::string& path : paths) {
            result.push_back(trial_.asReported(path));
        }
        return result;
    }

    void compareList(const std::string& name, std::vector<std::string> list,
                     std::vector<std::string> expected) {
        std::ranges::sort(list);
        std::ranges::sort(expected);
        std::vector<std::string> differences;
        std::ranges::set_symmetric_difference(list, expected, std::back_inserter(differences));
        if (!differences.empty()) {
            complain(name + " differ from what is expected at " + differences.front());
        }
    }

    void compareRemovals() {
        std::set<std::string> removed;
        for (const std::string& reported : trial_.report().removed) {
            const std::string path = trial_.asOnDisk(reported);
            if (!trial_.before().contains(path)) {
                complain("reported as removed, but never there: " + reported);
            }
            if (trial_.after().contains(path)) {
                complain("reported as removed, but there: " + reported);
            }
            if (!removed.insert(path).second) {
                complain("reported as removed twice: " + reported);
            }
            for (std::string above = path; above.size() > trial_.item().size();) {
                above.resize(above.rfind('/'));
                if (removed.contains(above)) {
                    complain("removed after the folder above it: " + reported);
                }
            }
        }
        for (const auto& [path, item] : trial_.before()) {
            if (!trial_.after().contains(path) && !removed.contains(path)) {
                complain("gone without a word: " + path);
            }
        }
    }

    /// Without the shield the item stands for all that it holds, and one failure for all of them.
    void compareWholeRemoval() {
        const DeletionReport& report = trial_.report();
        const bool gone = trial_.before().contains(trial_.item()) && !trial_.after().contains(trial_.item());
        if (report.removed != (gone ? std::vector{trial_.given()} : std::vector<std::string>{})) {
            complain(gone ? "gone, but not reported" : "reported as removed, but there");
        }
        if (!report.preserved.empty()) {
            complain("preserved without the shield: " + report.preserved.front());
        }
        if (report.failures.size() != (expected_.failures.empty() ? 0 : 1)) {
            complain("without the shield there is one failure or none");
        } else if (!report.failures.empty() &&
                   std::ranges::none_of(expected_.failures, [this, &report](const std::string& path) {
                       const std::string where =
                           path == trial_.item() ? "" : " (at " + trial_.asReported(path) + ")";
                       return report.failures[0] == trial_.given() + ": Permission denied" + where;
                   })) {
            complain("a failure that is not expected: " + report.failures[0]);
        }
    }

    const TrialDeletion& trial_;
    ExpectedReport expected_;
    std::string complaint_;
};

} // namespace

std::optional<std::string> compareReport(const TrialDeletion& trial) {
    return Comparison(trial).run();
}

} // namespace zentrill::test
