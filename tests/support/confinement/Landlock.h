#pragma once

#include <string>
#include <vector>

namespace zentrill::confinement {

/// The version of Landlock that the kernel has; 0 if it has none.
[[nodiscard]] int landlockVersion();

/// Keeps this thread, and whatever it starts from here on, from creating, opening for writing, renaming,
/// linking or removing anything but below the `writable` folders. The terminal and devices such as /dev/null
/// can still be written to. Throws `std::system_error`.
///
/// What it cannot do depends on the kernel's version of Landlock, of which no later one than `newest` is
/// used: the first refuses to move or link an item from one folder to another even inside of the writable
/// ones; up to the second, truncate(2) works everywhere. Owners, modes and times can be changed with all of
/// them.
void enterLandlock(const std::vector<std::string>& writable, int newest = 3);

} // namespace zentrill::confinement
