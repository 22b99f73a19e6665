#pragma once

#include <string>
#include <vector>

namespace zentrill {

/// Where an account's own entry in the desktop's menu stands, and the icon that it shows: two absolute paths,
/// whether or not there is something. `identifier` is the program's, which both are named after; `dataHome`
/// is the value of `XDG_DATA_HOME`, which counts only as an absolute path and is `.local/share` in the home
/// folder otherwise. Nothing where neither is known.
[[nodiscard]] std::vector<std::string> accountMenuItems(const std::string& identifier,
                                                        const std::string& homeDirectory,
                                                        const std::string& dataHome);

} // namespace zentrill
