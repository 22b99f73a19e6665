#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace zentrill {

/// Logical size in bytes of everything below the folder at `path`, without symbolic links and the folder
/// itself. 0 for a missing folder or a file; a sum beyond 64 bits stays at the largest value. `shouldStop`,
/// if there is one, is asked before each folder; after its first "yes" the sum is incomplete.
[[nodiscard]] std::int64_t folderSize(const std::string& path, const std::function<bool()>& shouldStop = {});

/// The size of each folder, in the order of `paths`, computed on all processors. `shouldStop` is asked on
/// several threads at once.
[[nodiscard]] std::vector<std::int64_t> folderSizes(const std::vector<std::string>& paths,
                                                    const std::function<bool()>& shouldStop = {});

} // namespace zentrill
