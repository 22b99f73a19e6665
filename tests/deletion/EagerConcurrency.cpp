// Takes the place of the choice in the library, so that every engine that a test makes is of this kind.

#include "deletion/DeletionConcurrency.h"

#include <sys/resource.h>

namespace zentrill {

DeletionConcurrency DeletionConcurrency::ofThisMachine() {
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur < 256) {
        return {};
    }
    return {.threads = 4, .afterEntries = 0};
}

} // namespace zentrill
