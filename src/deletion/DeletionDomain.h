#pragma once

#include "platform/DirectoryHandle.h"

#include <functional>

namespace zentrill {

/// Who holds a deletion to its item, beside its own care.
struct DeletionDomain {
    /// Restricts the calling thread, and those that it starts, for good to removals below the item; see
    /// `enterRemovalDomain`. Null where nothing does that. An error means that the deletion goes on without.
    std::function<int(const DirectoryHandle& item)> enter;

    /// The kernel, where it can.
    [[nodiscard]] static DeletionDomain ofThisMachine();
};

} // namespace zentrill
