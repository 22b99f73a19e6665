#pragma once

#include <string>
#include <vector>

namespace zentrill::confinement {

/// Gives the `writable` folders to a user id that nobody else has and turns into that user for good. Needs
/// root. Throws `std::system_error` or `std::runtime_error`.
void becomeOwnUser(const std::vector<std::string>& writable);

/// Turns for good into the user who owns `folder`. Throws unless that is somebody else than root.
void becomeOwnerOf(const std::string& folder);

} // namespace zentrill::confinement
