#pragma once

#include <map>
#include <string>

namespace zentrill {

/// The variables of a process: names and values, both byte strings.
using Environment = std::map<std::string, std::string>;

/// A copy of this process's own environment. Entries that are no assignment are left out; of a name that
/// occurs twice the first value counts, as it does for `getenv`.
[[nodiscard]] Environment currentEnvironment();

/// Takes out of this process's own environment what a terminal's shell exported about the terminal, and with
/// what it asked for other habits of `ps`. A program with a window has no terminal, and a process listing
/// that is cut at the width of one hides what runs. Call it before there is a second thread.
void leaveTerminalBehind();

} // namespace zentrill
