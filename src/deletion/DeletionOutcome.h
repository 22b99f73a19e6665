#pragma once

#include "deletion/DeletionRecord.h"

namespace zentrill {

/// What became of one item.
struct DeletionOutcome {
    DeletionRecord record;
    /// Whether the item itself is still there.
    bool left = false;
};

} // namespace zentrill
