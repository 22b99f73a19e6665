#include "deletion/DeletionDomain.h"

#include "platform/RemovalDomain.h"

namespace zentrill {

DeletionDomain DeletionDomain::ofThisMachine() {
    if (!hasRemovalDomains()) {
        return {};
    }
    return {.enter = enterRemovalDomain};
}

} // namespace zentrill
