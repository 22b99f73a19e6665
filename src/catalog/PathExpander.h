#pragma once

#include <functional>
#include <string>

namespace zentrill {

/// Turns a catalog path into an absolute one: a leading "~" becomes the user's home folder, and the rest
/// stays.
using PathExpander = std::function<std::string(const std::string& path)>;

} // namespace zentrill
