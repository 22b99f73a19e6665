#pragma once

#include <string>
#include <vector>

namespace zentrill {

/// The paths that one uninstall entry of the catalog stands for. `expanded` is the entry with its "~"
/// replaced. An entry with a "*" or "?" is a shell pattern, in which braces work too, and stands for its
/// matches in sorted order: none where nothing matches or the folder cannot be read. Any other entry stands
/// for `expanded` alone, whether it exists or not.
///
/// Only what the catalog wrote is a pattern. A home folder may have any name, and if one is called "[a]*",
/// the removal must not reach the data of its neighbours.
[[nodiscard]] std::vector<std::string> uninstallTargets(const std::string& entry,
                                                        const std::string& expanded);

} // namespace zentrill
