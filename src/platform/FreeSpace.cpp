#include "platform/FreeSpace.h"

#include <algorithm>
#include <limits>

#include <sys/statvfs.h>

namespace zentrill {

std::optional<std::int64_t> freeSpace(const DirectoryHandle& folder) {
    struct statvfs volume{};
    if (::fstatvfs(folder.descriptor(), &volume) != 0 || volume.f_blocks == 0 || volume.f_frsize == 0) {
        return std::nullopt;
    }
    constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    const std::uint64_t blockSize = volume.f_frsize;
    const std::uint64_t blocks = std::min<std::uint64_t>(volume.f_bavail, most / blockSize);
    return static_cast<std::int64_t>(blocks * blockSize);
}

} // namespace zentrill
