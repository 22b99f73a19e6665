#pragma once

#include <string>

namespace zentrill {

/// The user's home folder, absolute and without a trailing slash: `$HOME` when it is an absolute path,
/// otherwise the account database's entry. Empty when neither knows one, in which case no home-relative
/// path can be formed and callers find nothing.
[[nodiscard]] std::string homeDirectory();

} // namespace zentrill
