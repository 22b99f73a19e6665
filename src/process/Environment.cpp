#include "process/Environment.h"

#include <cstdlib>
#include <string_view>

#include <unistd.h>

#ifdef __APPLE__
extern char** environ;
#endif

namespace zentrill {

Environment currentEnvironment() {
    Environment result;
    for (char* const* entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
        const std::string_view assignment(*entry);
        const std::size_t equals = assignment.find('=');
        if (equals == std::string_view::npos || equals == 0) {
            continue;
        }
        result.emplace(assignment.substr(0, equals), assignment.substr(equals + 1));
    }
    return result;
}

void leaveTerminalBehind() {
    for (const char* name :
         {"COLUMNS", "LINES", "PS_FORMAT", "PS_PERSONALITY", "CMD_ENV", "I_WANT_A_BROKEN_PS"}) {
        ::unsetenv(name);
    }
}

} // namespace zentrill
