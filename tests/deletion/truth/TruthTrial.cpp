#include "truth/TruthTrial.h"

#include "deletion/SafeDeletionEngine.h"
#include "support/TemporaryDirectory.h"
#include "truth/DiskSnapshot.h"
#include "truth/Random.h"
#include "truth/RandomTree.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <grp.h>
#include <set>
#include <sstream>
#include <utility>
#include <vector>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zentrill::test {

namespace {

namespace fs = std::filesystem;

bool isAtOrBelow(const std::string& path, const std::string& top) {
    return path == top || path.starts_with(top + "/");
}

/// What the shield must keep, written down once more in the simplest way.
bool isCredential(const std::string& path, const std::vector<std::string>& explicitPaths) {
    std::string lower = path;
    std::ranges::transform(lower, lower.begin(), [](unsigned char byte) {
        return byte < 0x80 ? static_cast<char>(std::tolower(byte)) : static_cast<char>(byte);
    });
    static const std::set<std::string> names{
        ".env",    "auth.json", "oauth_creds.json", "credentials.json", "credentials", "keys.txt", "api_key",
        "api-key", "token",     "access_token",     "refresh_token"};
    const std::string last = lower.substr(lower.rfind('/') + 1);
    return names.contains(last) || last.ends_with(".key") || last.ends_with(".token") ||
           last.ends_with(".lic") || (lower + "/").find("/.ssh/") != std::string::npos ||
           (lower + "/").find("/.gnupg/") != std::string::npos ||
           std::ranges::any_of(explicitPaths, [&path](const std::string& explicitPath) {
               return isAtOrBelow(path, explicitPath);
           });
}

class Trial {
public:
    Trial(std::uint64_t seed, std::string base) : random_(seed), base_(std::move(base)) {}

    std::optional<std::string> run() {
        build();
        erase();
        compare();
        if (complaint_.empty()) {
            return std::nullopt;
        }
        return complaint_ + "\n  " + describe();
    }

private:
    void build() {
        outside_ = base_ + "/outside";
        top_ = base_ + "/top";
        ::mkdir(outside_.c_str(), 0700);
        ::mkdir(top_.c_str(), 0700);
        for (int i = 0; i < 4; ++i) {
            std::ofstream(outside_ + "/file" + std::to_string(i)) << "outside " << i;
        }
        RandomTree tree(random_, top_, outside_);
        item_ = random_.percent(60) ? top_ : random_.pick(tree.items());
        if (random_.percent(5)) {
            item_ += "/below"; // Missing, or on the far side of a link or a file.
        }
        options_.preserveCredentials = random_.percent(65);
        options_.preserveUnrecognized = random_.percent(35);
        const std::size_t explicitCount = random_.below(3);
        for (std::size_t i = 0; i < explicitCount; ++i) {
            options_.explicitCredentialPaths.push_back(random_.pick(tree.items()));
        }
        if (random_.percent(20)) {
            refused_.insert(random_.pick(tree.items()));
        }
        concurrency_ = {.threads = 1 + random_.below(4), .afterEntries = random_.below(20)};
        given_ = item_;
        if (random_.percent(30)) {
            static const std::vector<std::string> suffixes{"/", "//", "/.", "/x/.."};
            given_ += random_.pick(suffixes);
        } else if (random_.percent(20)) {
            given_.insert(base_.size(), "/./no/../");
        }
        before_ = takeSnapshot(base_);
        for (const auto& [path, mode] : tree.sealSomeFolders()) {
            before_[path].mode = (before_[path].mode & S_IFMT) | mode;
            sealed_.insert(path);
        }
    }

    void erase() {
        SafeDeletionEngine::DeletionPredicate mayRemove;
        if (!refused_.empty()) { // With a predicate nothing is spread over threads.
            mayRemove = [this](const std::string& path) { return !refused_.contains(asOnDisk(path)); };
        }
        const SafeDeletionEngine engine(FileSystem::shared(), {}, mayRemove, concurrency_);
        report_ = engine.deleteItem(given_, options_);
        std::vector<std::pair<std::string, mode_t>> modes;
        // A folder comes before its contents in the order of paths.
        for (const auto& [path, item] : before_) {
            struct stat status{};
            if ((item.isDirectory() || sealed_.contains(path)) && ::lstat(path.c_str(), &status) == 0) {
                modes.emplace_back(path, status.st_mode);
                ::chmod(path.c_str(), 0700);
            }
        }
        after_ = takeSnapshot(base_);
        for (const auto& [path, mode] : modes) {
            after_[path].mode = mode;
        }
    }

    /// A reported path in the form of the snapshots.
    [[nodiscard]] std::string asOnDisk(const std::string& reported) const {
        if (reported == given_) {
            return item_;
        }
        const std::string prefix = given_.substr(0, given_.find_last_not_of('/') + 1);
        return reported.starts_with(prefix + "/") ? item_ + reported.substr(prefix.size()) : reported;
    }

    void complain(const std::string& what) {
        if (complaint_.empty()) {
            complaint_ = what;
        }
    }

    void compare() {
        compareDisk();
        if (report_.failures.size() == 1 && report_.failures[0].starts_with("Refusing to traverse symlink")) {
            compareRefusal();
            return;
        }
        const bool shielded = options_.preserveCredentials;
        for (const std::string& reported : report_.preserved) {
            explained_.insert(asOnDisk(reported));
            if (!after_.contains(asOnDisk(reported))) {
                complain("reported as preserved, but gone: " + reported);
            }
            if (!shielded) {
                complain("preserved without the shield: " + reported);
            }
        }
        for (const std::string& line : report_.failures) {
            compareFailure(line);
        }
        for (const std::string& refused : refused_) {
            if (isAtOrBelow(refused, item_)) {
                explained_.insert(refused);
            }
        }
        if (shielded) {
            compareRemovals();
        } else {
            compareWholeRemoval();
        }
        compareRemains();
    }

    /// Behind a sealed folder nobody can tell whether there is an item.
    [[nodiscard]] bool maybeMissing() const { return item_.ends_with("/below"); }

    /// What is there now was there before and is unchanged; what must stay is there.
    void compareDisk() {
        for (const auto& [path, item] : after_) {
            const auto found = before_.find(path);
            if (found == before_.end()) {
                complain("appeared: " + path);
            } else if (found->second != item) {
                complain("changed: " + path);
            }
        }
        for (const auto& [path, item] : before_) {
            if (after_.contains(path)) {
                continue;
            }
            if (!isAtOrBelow(path, item_)) {
                complain("removed outside of the item: " + path);
            }
            if (options_.preserveCredentials && isCredential(path, options_.explicitCredentialPaths)) {
                complain("a credential is gone: " + path);
            }
            if (options_.preserveCredentials && options_.preserveUnrecognized && !item.isDirectory()) {
                complain("uncertain data is gone: " + path);
            }
            if (std::ranges::any_of(refused_, [this, &path](const std::string& refused) {
                    return isAtOrBelow(refused, item_) && isAtOrBelow(path, refused);
                })) {
                complain("removed though the predicate refused: " + path);
            }
        }
    }

    void compareRefusal() {
        if (after_ != before_) {
            complain("refused, but something changed");
        }
        const std::string ancestor = report_.failures[0].substr(report_.failures[0].find(": ") + 2);
        if (!after_.contains(ancestor) || !S_ISLNK(after_[ancestor].mode) || !isAtOrBelow(item_, ancestor)) {
            complain("refused for no reason: " + report_.failures[0]);
        }
    }

    void compareFailure(const std::string& line) {
        if (!options_.preserveCredentials) {
            const std::size_t mark = line.rfind(" (at /");
            const std::string path =
                mark == std::string::npos ? item_ : asOnDisk(line.substr(mark + 5, line.size() - mark - 6));
            if (!line.starts_with(given_ + ": ")) {
                complain("a failure that does not begin with the item: " + line);
            }
            if (!after_.contains(path) && !maybeMissing()) {
                complain("failed, but gone: " + line);
            }
            // One line stands for every item that could not go, which only a sealed folder can cause.
            explained_.insert(sealed_.begin(), sealed_.end());
            return;
        }
        for (const auto& [path, item] : after_) {
            const std::string reported = path == item_ ? given_
                                                       : given_.substr(0, given_.find_last_not_of('/') + 1) +
                                                             path.substr(std::min(path.size(), item_.size()));
            if (isAtOrBelow(path, item_) && line.starts_with(reported + ": ") &&
                line.find("denied") != std::string::npos) {
                explained_.insert(path);
                return;
            }
        }
        if (!maybeMissing()) {
            complain("a failure that names nothing on the disk: " + line);
        }
    }

    void compareRemovals() {
        std::set<std::string> removed;
        for (const std::string& reported : report_.removed) {
            const std::string path = asOnDisk(reported);
            if (!before_.contains(path)) {
                complain("reported as removed, but never there: " + reported);
            }
            if (after_.contains(path)) {
                complain("reported as removed, but there: " + reported);
            }
            if (!removed.insert(path).second) {
                complain("reported as removed twice: " + reported);
            }
            for (std::string above = path; above.size() > item_.size();) {
                above.resize(above.rfind('/'));
                if (removed.contains(above)) {
                    complain("removed after the folder above it: " + reported);
                }
            }
        }
        for (const auto& [path, item] : before_) {
            if (!after_.contains(path) && !removed.contains(path)) {
                complain("gone without a word: " + path);
            }
        }
    }

    void compareWholeRemoval() {
        const bool gone = before_.contains(item_) && !after_.contains(item_);
        const std::vector<std::string> expected = gone ? std::vector{given_} : std::vector<std::string>{};
        if (report_.removed != expected) {
            complain(gone ? "gone, but not reported" : "reported as removed, but there");
        }
    }

    /// Everything that stands at or below the item has a reason in the report.
    void compareRemains() {
        for (const auto& [path, item] : after_) {
            if (isAtOrBelow(path, item_) &&
                std::ranges::none_of(explained_, [&path](const std::string& reason) {
                    return isAtOrBelow(path, reason) || isAtOrBelow(reason, path);
                })) {
                complain("left without a reason: " + path);
            }
        }
    }

    [[nodiscard]] std::string describe() const {
        std::ostringstream text;
        text << "item " << given_ << (options_.preserveCredentials ? ", shield" : "")
             << (options_.preserveUnrecognized ? ", keeping uncertain data" : "") << ", "
             << concurrency_.threads << " threads after " << concurrency_.afterEntries << " entries\n";
        for (const std::string& path : report_.removed) {
            text << "  removed " << path << "\n";
        }
        for (const std::string& path : report_.preserved) {
            text << "  preserved " << path << "\n";
        }
        for (const std::string& line : report_.failures) {
            text << "  failure " << line << "\n";
        }
        for (const auto& [path, item] : before_) {
            text << "  " << (after_.contains(path) ? "stands " : "gone   ") << std::oct << item.mode
                 << std::dec << " " << path << "\n";
        }
        return text.str();
    }

    Random random_;
    std::string base_;
    std::string outside_;
    std::string top_;
    std::string item_;
    std::string given_;
    DeletionOptions options_;
    DeletionConcurrency concurrency_;
    std::set<std::string> refused_;
    std::set<std::string> sealed_;
    DiskSnapshot before_;
    DiskSnapshot after_;
    DeletionReport report_;
    std::set<std::string> explained_;
    std::string complaint_;
};

std::optional<std::string> runAll(std::uint64_t firstSeed, std::uint64_t count, const std::string& folder) {
    for (std::uint64_t seed = firstSeed; seed < firstSeed + count; ++seed) {
        if (std::optional<std::string> complaint = runTruthTrial(seed, folder)) {
            return "seed " + std::to_string(seed) + ": " + *complaint;
        }
    }
    return std::nullopt;
}

std::string trialFolder() {
    return ::access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp";
}

} // namespace

std::optional<std::string> runTruthTrial(std::uint64_t seed, const std::string& folder) {
    const std::string base = folder + "/trial";
    ::mkdir(base.c_str(), 0700);
    std::optional<std::string> complaint = Trial(seed, base).run();
    fs::remove_all(base);
    return complaint;
}

std::optional<std::string> runTruthTrials(std::uint64_t firstSeed, std::uint64_t count) {
    const TemporaryDirectory folder(trialFolder());
    if (::geteuid() != 0) {
        return runAll(firstSeed, count, folder.path());
    }
    constexpr uid_t ordinaryUser = 65534;
    if (::chown(folder.path().c_str(), ordinaryUser, ordinaryUser) != 0) {
        return "cannot give the folder away";
    }
    const std::string answer = folder.path("answer");
    const pid_t child = ::fork();
    if (child == 0) {
        if (::setgroups(0, nullptr) != 0 || ::setresgid(ordinaryUser, ordinaryUser, ordinaryUser) != 0 ||
            ::setresuid(ordinaryUser, ordinaryUser, ordinaryUser) != 0) {
            ::_exit(2);
        }
        try {
            const std::optional<std::string> complaint = runAll(firstSeed, count, folder.path());
            std::ofstream(answer) << complaint.value_or("");
            ::_exit(complaint ? 1 : 0);
        } catch (const std::exception& error) {
            std::ofstream(answer) << error.what();
            ::_exit(2);
        }
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    if (status == 0) {
        return std::nullopt;
    }
    std::ifstream file(answer);
    std::ostringstream text;
    text << "status " << status << ", " << file.rdbuf();
    return text.str();
}

} // namespace zentrill::test
