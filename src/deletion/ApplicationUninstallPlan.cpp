#include "deletion/ApplicationUninstallPlan.h"

#include "platform/ByteSum.h"

namespace zentrill {

std::int64_t ApplicationUninstallPlan::removedBytes() const {
    std::int64_t bytes = 0;
    for (const Item& item : items) {
        addBytes(bytes, item.plan.removed.logicalBytes);
    }
    return bytes;
}

std::int64_t ApplicationUninstallPlan::freedBytes() const {
    std::int64_t bytes = 0;
    for (const Item& item : items) {
        addBytes(bytes, item.plan.freedBytes);
    }
    return bytes;
}

} // namespace zentrill
