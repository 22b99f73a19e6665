#pragma once

#include <string>

namespace zentrill {

/// The folder three levels above the running executable, "….app" for an installed program (the executable is
/// "Contents/MacOS/…" in it). Empty if the system does not say where the executable is.
[[nodiscard]] std::string bundleLocation();

/// The same for the executable at the absolute path `executable`.
[[nodiscard]] std::string bundleLocation(const std::string& executable);

} // namespace zentrill
