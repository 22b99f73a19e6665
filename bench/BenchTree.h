#pragma once

#include <string>

namespace zentrill::bench {

/// Makes a new folder in `parent`, and returns its path.
[[nodiscard]] std::string makeFolder(const std::string& parent);

/// Makes a folder at `path` with `folders` folders in it, each of which holds `filesPerFolder` empty files.
void makeTree(const std::string& path, int folders, int filesPerFolder);

} // namespace zentrill::bench
