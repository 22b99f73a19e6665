#pragma once

#include <cstddef>

namespace zentrill {

/// How many threads one deletion uses, and from when on.
struct DeletionConcurrency {
    std::size_t threads = 1;
    /// Entries handled before the other threads are started: below that, starting them costs more than they
    /// bring.
    std::size_t afterEntries = 1000;

    /// What suits this machine: a thread for each processor, but four at most, which saturate a disk's
    /// journal, and one alone where few descriptors may be open, since each thread keeps directories open.
    [[nodiscard]] static DeletionConcurrency ofThisMachine();
};

} // namespace zentrill
