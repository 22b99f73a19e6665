#pragma once

#include <cstdint>
#include <string>

namespace zentrill::bench {

/// The logical bytes below each of the folders directly inside `path`, links and those folders themselves
/// left out, added up on all processors with nothing but the kernel's calls: `openat`, `getdents64` and
/// `statx`, without a check, a copied name or a path. Nothing that does the same work can be faster.
[[nodiscard]] std::int64_t bareSizeOfFolders(const std::string& path);

} // namespace zentrill::bench
