#include "truth/TrialDeletion.h"

#include "DeletionForm.h"
#include "truth/RandomTree.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <fstream>
#include <ranges>
#include <sstream>
#include <utility>
#include <vector>

#include <sys/stat.h>

namespace zentrill::test {

bool isAtOrBelow(const std::string& path, const std::string& top) {
    return path == top || path.starts_with(top + "/");
}

TrialDeletion::TrialDeletion(std::uint64_t seed, std::string base, Kind kind)
    : random_(seed), base_(std::move(base)) {
    build(kind);
}

void TrialDeletion::build(Kind kind) {
    const std::string outside = base_ + "/outside";
    const std::string top = base_ + "/top";
    ::mkdir(outside.c_str(), 0700);
    ::mkdir(top.c_str(), 0700);
    for (int i = 0; i < 4; ++i) {
        std::ofstream(outside + "/file" + std::to_string(i)) << "outside " << i;
    }
    RandomTree tree(random_, top, outside);
    item_ = random_.percent(60) ? top : random_.pick(tree.items());
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
    if (kind == Kind::longAndShielded) {
        item_ = top;
        options_.preserveCredentials = true;
        options_.preserveUnrecognized = false;
        constexpr int furtherTrees = 12;
        for (int i = 0; i < furtherTrees; ++i) {
            const std::string further = top + "/further-" + std::to_string(i);
            ::mkdir(further.c_str(), 0755);
            (void)RandomTree(random_, further, outside);
        }
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

SafeDeletionEngine TrialDeletion::engine(const DeletionConcurrency& concurrency) const {
    SafeDeletionEngine::DeletionPredicate mayRemove;
    if (!refused_.empty()) { // With a predicate nothing is spread over threads.
        mayRemove = [this](const std::string& path) { return !refused_.contains(asOnDisk(path)); };
    }
    return newEngine(concurrency, mayRemove);
}

void TrialDeletion::run(const DeletionConcurrency& concurrency) {
    const SafeDeletionEngine engine = this->engine(concurrency);
    plan_ = engine.plan(given_, options_, {.listedItems = SIZE_MAX});
    report_ = engine.deleteItem(given_, options_);
    after_ = look();
}

void TrialDeletion::deleteOnce() const {
    (void)engine(concurrency_).deleteItem(given_, options_);
}

void TrialDeletion::beginAnew() {
    before_ = look();
}

DiskSnapshot TrialDeletion::look() const {
    std::vector<std::pair<std::string, mode_t>> modes;
    // A folder comes before its contents in the order of paths.
    for (const auto& [path, item] : before_) {
        struct stat status{};
        if ((item.isDirectory() || sealed_.contains(path)) && ::lstat(path.c_str(), &status) == 0) {
            modes.emplace_back(path, status.st_mode);
            ::chmod(path.c_str(), 0700);
        }
    }
    DiskSnapshot snapshot = takeSnapshot(base_);
    for (const auto& [path, mode] : std::ranges::reverse_view(modes)) {
        snapshot[path].mode = mode;
        ::chmod(path.c_str(), mode & 07777);
    }
    return snapshot;
}

bool TrialDeletion::isCredential(const std::string& path) const {
    std::string lower = path;
    std::ranges::transform(lower, lower.begin(), [](unsigned char byte) {
        return byte < 0x80 ? static_cast<char>(std::tolower(byte)) : static_cast<char>(byte);
    });
    const std::string kelvinSign = "\u212A";
    for (std::size_t at = 0; (at = lower.find(kelvinSign, at)) != std::string::npos;) {
        lower.replace(at, kelvinSign.size(), 1, 'k');
    }
    static const std::set<std::string> names{
        ".env",    "auth.json", "oauth_creds.json", "credentials.json", "credentials", "keys.txt", "api_key",
        "api-key", "token",     "access_token",     "refresh_token"};
    const std::string last = lower.substr(lower.rfind('/') + 1);
    return names.contains(last) || last.ends_with(".key") || last.ends_with(".token") ||
           last.ends_with(".lic") || (lower + "/").find("/.ssh/") != std::string::npos ||
           (lower + "/").find("/.gnupg/") != std::string::npos ||
           std::ranges::any_of(options_.explicitCredentialPaths, [&path](const std::string& explicitPath) {
               return isAtOrBelow(path, explicitPath);
           });
}

std::string TrialDeletion::asOnDisk(const std::string& reported) const {
    if (reported == given_) {
        return item_;
    }
    const std::string prefix = given_.substr(0, given_.find_last_not_of('/') + 1);
    return reported.starts_with(prefix + "/") ? item_ + reported.substr(prefix.size()) : reported;
}

std::string TrialDeletion::asReported(const std::string& path) const {
    if (path == item_) {
        return given_;
    }
    return given_.substr(0, given_.find_last_not_of('/') + 1) + path.substr(item_.size());
}

std::string TrialDeletion::description() const {
    std::ostringstream text;
    text << "item " << given_ << (options_.preserveCredentials ? ", shield" : "")
         << (options_.preserveUnrecognized ? ", keeping uncertain data" : "") << ", " << concurrency_.threads
         << " threads after " << concurrency_.afterEntries << " entries\n";
    for (const DeletionPlan::Item& item : plan_.removed.listed) {
        text << "  planned to go " << item.path << "\n";
    }
    for (const std::string& line : plan_.failures) {
        text << "  planned to fail " << line << "\n";
    }
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
        text << "  " << (after_.contains(path) ? "stands " : "gone   ") << std::oct << item.mode << std::dec
             << " " << path << "\n";
    }
    return text.str();
}

} // namespace zentrill::test
