#pragma once

#include <map>
#include <string>

namespace zentrill {

/// The variables of a process: names and values, both byte strings.
using Environment = std::map<std::string, std::string>;

/// A copy of this process's own environment. Entries without a "=" are left out. Where a name
/// occurs twice, its first value counts, as it does for `getenv`.
[[nodiscard]] Environment currentEnvironment();

/// Removes the variables that describe a terminal, and those that change how `ps` prints, from this process's
/// own environment. A program with a window has no terminal, and a process listing that is cut at the
/// width of one hides what runs. Call it before you start a second thread.
void leaveTerminalBehind();

} // namespace zentrill
