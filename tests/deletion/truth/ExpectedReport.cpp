#include "truth/ExpectedReport.h"

#include <map>
#include <vector>

#include <sys/stat.h>

namespace zentrill::test {

namespace {

std::string folderOf(const std::string& path) {
    return path.substr(0, path.rfind('/'));
}

class Expectation {
public:
    explicit Expectation(const TrialDeletion& trial) : trial_(trial) {
        for (const auto& [path, item] : trial.before()) {
            entries_[folderOf(path)].push_back(path);
        }
    }

    ExpectedReport run() {
        if (isReached()) {
            report_.left = visit(trial_.item());
        }
        return report_;
    }

private:
    [[nodiscard]] bool may(const std::string& folder, mode_t right) const {
        return (trial_.before().at(folder).mode & right) != 0;
    }

    /// Whether the item exists, as far as can be seen, and no link leads to it.
    [[nodiscard]] bool isReached() {
        const std::string& item = trial_.item();
        for (std::size_t end = trial_.base().size(); end != std::string::npos;
             end = item.find('/', end + 1)) {
            const std::string ancestor = item.substr(0, end);
            const auto found = trial_.before().find(ancestor);
            if (found != trial_.before().end() && S_ISLNK(found->second.mode)) {
                report_.unsafeAncestor = ancestor;
            }
            if (found == trial_.before().end() || !found->second.isDirectory() || !may(ancestor, S_IXUSR)) {
                return false;
            }
        }
        return trial_.before().contains(item);
    }

    /// True if something stays there.
    bool visit(const std::string& path) {
        if (trial_.isShielded() && trial_.isCredential(path)) {
            report_.preserved.insert(path);
            return true;
        }
        const bool directory = trial_.before().at(path).isDirectory();
        const bool kept = trial_.isShielded() && trial_.options().preserveUnrecognized && !directory;
        if (!kept && trial_.refused().contains(path)) {
            return true;
        }
        if (!may(folderOf(path), S_IXUSR)) {
            return fail(path);
        }
        if (kept) {
            report_.preserved.insert(path);
            return true;
        }
        if (directory) {
            if (!may(path, S_IRUSR) && (trial_.isShielded() || !entries_[path].empty())) {
                return fail(path);
            }
            bool left = false;
            for (const std::string& entry : entries_[path]) {
                left = visit(entry) || left;
            }
            if (left) {
                return true;
            }
        }
        if (!may(folderOf(path), S_IWUSR)) {
            return fail(path);
        }
        report_.removed.insert(path);
        return false;
    }

    bool fail(const std::string& path) {
        report_.failures.insert(path);
        return true;
    }

    const TrialDeletion& trial_;
    std::map<std::string, std::vector<std::string>> entries_;
    ExpectedReport report_;
};

} // namespace

ExpectedReport expectedReport(const TrialDeletion& trial) {
    return Expectation(trial).run();
}

} // namespace zentrill::test
