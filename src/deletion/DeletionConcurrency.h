#pragma once

#include <cstddef>

namespace zentrill {

/// How many threads one deletion uses, and when it starts them.
struct DeletionConcurrency {
    std::size_t threads = 1;
    /// Entries handled before the other threads are started: in a smaller tree, starting them takes longer
    /// than they save.
    std::size_t afterEntries = 1000;

    /// What suits this machine: a thread for each processor, up to four, which saturate a disk's journal;
    /// only one where few descriptors may be open, because each thread keeps directories open.
    [[nodiscard]] static DeletionConcurrency ofThisMachine();
};

} // namespace zentrill
