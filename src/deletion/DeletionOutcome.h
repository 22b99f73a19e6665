#pragma once

#include "deletion/DeletionRecord.h"

namespace zentrill {

/// What became of one item.
struct DeletionOutcome {
    DeletionRecord record;
    /// Whether the item itself is still there.
    bool left = false;
    /// Whether it is there because somebody moved a folder around it out of the item that is being deleted.
    bool movedAway = false;
};

} // namespace zentrill
