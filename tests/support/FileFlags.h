#pragma once

#include <cstdint>
#include <string>

namespace zentrill::test {

/// What keeps a file as it is whatever its permissions say; `chattr +i` and `chattr +a` on Linux.
enum class FileFlag : std::uint8_t { none, immutable, appendOnly };

/// Sets this flag and clears the other; false, with `errno`, where that cannot be done.
[[nodiscard]] bool setFileFlag(const std::string& path, FileFlag flag);

} // namespace zentrill::test
