#pragma once

#include <string>
#include <vector>

namespace zentrill {

/// The paths of an account's menu entry and of its icon, both absolute, whether or not they exist. Both are
/// named after the program's `identifier`. `dataHome` is the value of `XDG_DATA_HOME`; if it is not an
/// absolute path, `.local/share` in the home folder is used. Empty if the home folder is not known either.
[[nodiscard]] std::vector<std::string> accountMenuItems(const std::string& identifier,
                                                        const std::string& homeDirectory,
                                                        const std::string& dataHome);

} // namespace zentrill
