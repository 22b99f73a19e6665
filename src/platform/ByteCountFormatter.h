#pragma once

#include <cstdint>
#include <string>

namespace zentrill {

/// A file size in decimal megabytes or gigabytes, never a smaller unit: "1 MB" for 999,999 bytes, "850 MB",
/// "4.66 GB". Megabytes show one decimal at most, gigabytes two, trailing zeros dropped, as the Finder
/// writes sizes. `byteCount` at least 0.
[[nodiscard]] std::string formattedByteCount(std::int64_t byteCount);

} // namespace zentrill
