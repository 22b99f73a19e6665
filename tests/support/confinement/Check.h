#pragma once

#include <cerrno>
#include <string>
#include <system_error>

namespace zentrill::confinement {

/// Passes the result of a system call on; throws `std::system_error` naming the `step` when it failed.
inline int check(long result, const std::string& step) {
    if (result < 0) {
        throw std::system_error(errno, std::generic_category(), step);
    }
    return static_cast<int>(result);
}

} // namespace zentrill::confinement
