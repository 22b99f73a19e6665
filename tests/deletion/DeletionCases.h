#pragma once

#include "deletion/SafeDeletionEngine.h"
#include "platform/FileSystem.h"

#include <string>

namespace zentrill::test {

/// The two positions of the Safety Shield.
inline const DeletionOptions unshielded{};
inline const DeletionOptions shielded{.preserveCredentials = true};

/// Whether something stands at the path itself, a dangling link included.
inline bool exists(const std::string& path) {
    return FileSystem::shared().itemExistsWithoutFollowingSymlink(path);
}

} // namespace zentrill::test
