#pragma once

#include "platform/DirectoryHandle.h"

#include <functional>

namespace zentrill {

/// What confines a deletion to its item, in addition to its own care.
struct DeletionDomain {
    /// Restricts the calling thread, and the threads that it starts, to removals below the item, for good;
    /// see `enterRemovalDomain`. Null if there is no such thing here. After an error the deletion goes on
    /// without.
    std::function<int(const DirectoryHandle& item)> enter;

    /// That of the kernel, if it has one.
    [[nodiscard]] static DeletionDomain ofThisMachine();
};

} // namespace zentrill
