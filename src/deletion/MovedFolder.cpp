#include "deletion/MovedFolder.h"

namespace zentrill {

bool MovedFolder::notice() {
    // Where the permissions already forbid it, which is common, the way up need not be climbed.
    if (item_ == FileIdentity{} || !stack_.directory().permitsChanges()) {
        return false;
    }
    depth_ = stack_.depthMovedOutOf(item_).value_or(0);
    return depth_ != 0;
}

} // namespace zentrill
