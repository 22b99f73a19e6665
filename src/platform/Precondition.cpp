#include "platform/Precondition.h"

#include <cstdio>
#include <cstdlib>

namespace zentrill {

void precondition(bool holds, const char* message) noexcept {
    if (holds) {
        return;
    }
    (void)std::fprintf(stderr, "Zentrill: %s\n", message);
    std::abort();
}

} // namespace zentrill
