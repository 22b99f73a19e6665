#include "controller/HomePathExpander.h"

#include "platform/HomeDirectory.h"
#include "platform/Paths.h"

namespace zentrill {

PathExpander homePathExpander() {
    return [home = homeDirectory()](const std::string& path) { return paths::expandingTilde(path, home); };
}

} // namespace zentrill
