#include "deletion/MovedFolder.h"

namespace zentrill {

bool MovedFolder::notice() {
    // Usually the permissions of the directory forbid it, and the folders above need no look.
    if (item_ == FileIdentity{} || !stack_.directory().permitsChanges()) {
        return false;
    }
    depth_ = stack_.depthMovedOutOf(item_).value_or(0);
    return depth_ != 0;
}

} // namespace zentrill
