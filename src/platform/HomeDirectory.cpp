#include "platform/HomeDirectory.h"

#include "platform/Paths.h"

#include <array>
#include <cstdlib>

#include <pwd.h>
#include <unistd.h>

namespace zentrill {

std::string homeDirectory() {
    if (const char* home = std::getenv("HOME"); home != nullptr && home[0] == '/') {
        return paths::standardized(home);
    }
    std::array<char, 16384> buffer{};
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr) {
        return {};
    }
    if (found->pw_dir == nullptr || found->pw_dir[0] != '/') {
        return {};
    }
    return paths::standardized(found->pw_dir);
}

} // namespace zentrill
