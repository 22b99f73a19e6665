#pragma once

#include <string>

namespace zentrill::confinement {

/// Removes everything in the folder at `path`, however deep, locked or immutable, as far as the process may.
/// Links are not followed and other file systems not entered.
void emptyFolder(const std::string& path);

} // namespace zentrill::confinement
