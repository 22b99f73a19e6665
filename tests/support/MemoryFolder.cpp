#include "support/MemoryFolder.h"

#include <cstdlib>

namespace zentrill::test {

std::string memoryFolder() {
    // The first is the confined program's own, see support/confinement.
    for (const char* variable : {"ZENTRILL_MEMORY", "TMPDIR"}) {
        if (const char* folder = std::getenv(variable); folder != nullptr && *folder != '\0') {
            return folder;
        }
    }
    return "/tmp";
}

} // namespace zentrill::test
