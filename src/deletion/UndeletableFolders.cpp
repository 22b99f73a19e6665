#include "deletion/UndeletableFolders.h"

#include "deletion/PathAliases.h"
#include "platform/FileSystem.h"
#include "platform/HomeDirectory.h"
#include "platform/Paths.h"

#include <algorithm>

#include <sys/stat.h>

namespace zentrill {

UndeletableFolders::UndeletableFolders() {
    const std::string home = homeDirectory();
    if (home.empty()) {
        return;
    }
    homes_.push_back(aliasNormalized(home));
    const std::optional<std::string> resolved = FileSystem::shared().resolvingSymlinks(home);
    if (!resolved) {
        return;
    }
    homes_.push_back(aliasNormalized(*resolved));
    for (std::string folder = *resolved; folder != "/"; folder = std::string(paths::parent(folder))) {
        struct stat status{};
        if (::lstat(folder.c_str(), &status) == 0) {
            identities_.push_back({.device = status.st_dev, .inode = status.st_ino});
        }
    }
}

std::optional<std::string> UndeletableFolders::refusal(const std::string& path) const {
    if (path == "/") {
        return "Refusing to delete the root folder: /";
    }
    const std::string normalized = aliasNormalized(path);
    for (const std::string& home : homes_) {
        if (normalized == home) {
            return "Refusing to delete the home folder: " + path;
        }
        if (paths::isSameOrBelow(home, normalized)) {
            return "Refusing to delete a folder that holds the home folder: " + path;
        }
    }
    return std::nullopt;
}

bool UndeletableFolders::contains(const FileIdentity& folder) const {
    return std::ranges::find(identities_, folder) != identities_.end();
}

} // namespace zentrill
