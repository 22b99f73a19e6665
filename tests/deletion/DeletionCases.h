#pragma once

#include "deletion/SafeDeletionEngine.h"
#include "platform/FileSystem.h"

#include <string>
#include <vector>

namespace zentrill::test {

/// The two positions of the Safety Shield, and what it does to a folder whose contents nobody knows.
inline const DeletionOptions unshielded{};
inline const DeletionOptions shielded{.preserveCredentials = true};
inline const DeletionOptions keepingAll{.preserveCredentials = true, .preserveUnrecognized = true};

/// Whether something stands at the path itself, a dangling link included.
inline bool exists(const std::string& path) {
    return FileSystem::shared().itemExistsWithoutFollowingSymlink(path);
}

/// The paths that a plan lists.
inline std::vector<std::string> pathsOf(const DeletionPlan::Items& items) {
    std::vector<std::string> paths;
    for (const DeletionPlan::Item& item : items.listed) {
        paths.push_back(item.path);
    }
    return paths;
}

} // namespace zentrill::test
