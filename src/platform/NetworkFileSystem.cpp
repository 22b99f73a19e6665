#include "platform/NetworkFileSystem.h"

#include <algorithm>
#include <array>

#ifdef __APPLE__
#include <sys/mount.h>
#include <sys/param.h>
#else
#include <sys/vfs.h>
#endif

namespace zentrill {

bool isNetworkFileSystem(std::uint32_t type) noexcept {
    // From <linux/magic.h> and, for those that it lacks, from the sources of the kernel.
    constexpr std::array<std::uint32_t, 15> types{
        0x6969,     // NFS
        0x517B,     // SMB
        0xFF534D42, // CIFS
        0xFE534D42, // SMB 2 and 3
        0x65735546, // FUSE: sshfs, rclone and the like
        0x01021997, // 9P
        0x00C36400, // Ceph
        0x5346414F, // OpenAFS
        0x6B414653, // AFS
        0x73757245, // Coda
        0x564C,     // NetWare
        0x0BD00BD0, // Lustre
        0x47504653, // GPFS
        0x20030528, // OrangeFS
        0x19830326, // BeeGFS
    };
    return std::ranges::find(types, type) != types.end();
}

bool isOnNetwork(const std::string& path) {
    struct statfs system{};
    if (::statfs(path.c_str(), &system) != 0) {
        return false;
    }
#ifdef __APPLE__
    return (system.f_flags & MNT_LOCAL) == 0;
#else
    return isNetworkFileSystem(static_cast<std::uint32_t>(system.f_type));
#endif
}

} // namespace zentrill
