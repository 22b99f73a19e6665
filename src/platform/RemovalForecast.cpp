#include "platform/RemovalForecast.h"

#include <cerrno>
#include <cstdint>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#ifdef __linux__
#include <sys/sysmacros.h>
#endif

namespace zentrill {

namespace {

// The unit of block counts, whatever the block size of the file system.
constexpr std::int64_t blockSize = 512;

EntryKind kindFromMode(unsigned mode) {
    if (S_ISDIR(mode)) {
        return EntryKind::directory;
    }
    return S_ISLNK(mode) ? EntryKind::link : EntryKind::other;
}

} // namespace

RemovalForecast::RemovalForecast(const DirectoryHandle& directory) {
    EntryStatus ignored;
    (void)examine(directory, "", ignored, traits_, sticky_);
    if (::faccessat(directory.descriptor(), ".", W_OK | X_OK, AT_EACCESS) != 0) {
        error_ = errno;
    } else if (traits_.fixed) {
        error_ = EPERM; // An append-only folder is writable, but nothing can be removed from it.
    }
}

int RemovalForecast::lookUp(const DirectoryHandle& directory, const char* name, EntryStatus& status,
                            int& removalError) const {
    Traits traits;
    bool ignored = false;
    const int error = examine(directory, name, status, traits, ignored);
    if (error == 0) {
        removalError = this->removalError(traits);
    }
    return error;
}

int RemovalForecast::removalError(const RemovalForecast& inner) const {
    return removalError(inner.traits_);
}

int RemovalForecast::removalError(const Traits& entry) const {
    if (error_ != 0) {
        return error_;
    }
    const uid_t user = ::geteuid();
    const bool another = sticky_ && user != 0 && user != traits_.owner && user != entry.owner;
    if (another || entry.fixed) {
        return EPERM;
    }
    return entry.mountPoint ? EBUSY : 0;
}

#ifdef __linux__

int RemovalForecast::examine(const DirectoryHandle& directory, const char* name, EntryStatus& status,
                             Traits& traits, bool& sticky) {
    struct statx found{};
    int result = 0;
    do {
        result = ::statx(directory.descriptor(), name, AT_EMPTY_PATH | AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT,
                         STATX_BASIC_STATS, &found);
    } while (result != 0 && errno == EINTR);
    if (result != 0) {
        return errno;
    }
    const std::uint64_t attributes = found.stx_attributes & found.stx_attributes_mask;
    traits = {.owner = found.stx_uid,
              .fixed = (attributes & (STATX_ATTR_IMMUTABLE | STATX_ATTR_APPEND)) != 0,
              .mountPoint = (attributes & STATX_ATTR_MOUNT_ROOT) != 0};
    sticky = (found.stx_mode & S_ISVTX) != 0;
    status = {
        .kind = kindFromMode(found.stx_mode),
        .identity = {.device = makedev(found.stx_dev_major, found.stx_dev_minor), .inode = found.stx_ino},
        .size = static_cast<std::int64_t>(found.stx_size),
        .allocatedSize = static_cast<std::int64_t>(found.stx_blocks) * blockSize,
        .linkCount = found.stx_nlink};
    return 0;
}

#else

int RemovalForecast::examine(const DirectoryHandle& directory, const char* name, EntryStatus& status,
                             Traits& traits, bool& sticky) {
    struct stat found{};
    const int result = *name == '\0' ? ::fstat(directory.descriptor(), &found)
                                     : ::fstatat(directory.descriptor(), name, &found, AT_SYMLINK_NOFOLLOW);
    if (result != 0) {
        return errno;
    }
    traits = {.owner = found.st_uid,
              .fixed = (found.st_flags & (UF_IMMUTABLE | UF_APPEND | SF_IMMUTABLE | SF_APPEND)) != 0};
    sticky = (found.st_mode & S_ISVTX) != 0;
    status = {.kind = kindFromMode(found.st_mode),
              .identity = {.device = found.st_dev, .inode = found.st_ino},
              .size = found.st_size,
              .allocatedSize = found.st_blocks * blockSize,
              .linkCount = found.st_nlink};
    return 0;
}

#endif

} // namespace zentrill
