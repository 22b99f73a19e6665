#pragma once

#include "deletion/DeletionPlan.h"

#include <cstddef>

namespace zentrill {

/// What the walk of a plan found, or a part of it.
struct PlanRecord {
    DeletionPlan plan;
    /// How many items of each kind are listed at most, and how many failures.
    std::size_t listedItems = 0;
    std::size_t listedFailures = 0;
    /// Folders that another thread has done.
    std::size_t foldersOfOthers = 0;

    /// Adds what was found later.
    void append(PlanRecord later);
};

/// What would become of one item.
struct PlanOutcome {
    PlanRecord record;
    /// Whether the item itself would still be there.
    bool left = false;
    /// The logical size of what it holds, in bytes.
    std::int64_t logicalBytes = 0;
};

} // namespace zentrill
