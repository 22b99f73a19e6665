#pragma once

#include <map>
#include <string>

namespace zentrill {

/// The variables of a process: names and values, both byte strings.
using Environment = std::map<std::string, std::string>;

/// A copy of this process's own environment. Entries that are no assignment are left out; of a name that
/// occurs twice the first value counts, as it does for `getenv`.
[[nodiscard]] Environment currentEnvironment();

} // namespace zentrill
