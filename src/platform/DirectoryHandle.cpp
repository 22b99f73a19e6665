#include "platform/DirectoryHandle.h"

#include "platform/CResources.h"

#include <array>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#ifdef __linux__
#include <linux/openat2.h>

#include <sys/syscall.h>
#endif

namespace zentrill {

namespace {

#ifdef __linux__
constexpr int searchOnly = O_PATH;
#else
constexpr int searchOnly = O_SEARCH;
#endif
constexpr int directoryFlags = O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

/// Runs a system call again for as long as a signal interrupts it.
template <typename Call>
auto uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

int errorOf(int result) {
    return result < 0 ? errno : 0;
}

EntryKind kindFromType(unsigned char type) {
    switch (type) {
    case DT_UNKNOWN:
        return EntryKind::unknown;
    case DT_DIR:
        return EntryKind::directory;
    case DT_LNK:
        return EntryKind::link;
    default:
        return EntryKind::other;
    }
}

EntryKind kindFromMode(mode_t mode) {
    if (S_ISDIR(mode)) {
        return EntryKind::directory;
    }
    return S_ISLNK(mode) ? EntryKind::link : EntryKind::other;
}

bool isDotOrDotDot(std::string_view name) {
    return name == "." || name == "..";
}

#ifdef __linux__

/// Whether the open directory is the place where a file system is mounted; nothing if the kernel cannot say.
std::optional<bool> isMountRoot(int descriptor) {
    struct statx status{};
    if (::statx(descriptor, "", AT_EMPTY_PATH | AT_NO_AUTOMOUNT, STATX_INO, &status) != 0 ||
        (status.stx_attributes_mask & STATX_ATTR_MOUNT_ROOT) == 0) {
        return std::nullopt;
    }
    return (status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
}

/// Opens without crossing a mount point, so that a server which no longer answers is never asked. Bind mounts
/// count, although they have the same device number as the directory around them.
int openRefusingMounts(int directory, const char* name) {
    open_how how{};
    how.flags = static_cast<decltype(how.flags)>(O_RDONLY | directoryFlags);
    how.resolve = RESOLVE_NO_XDEV;
    return static_cast<int>(::syscall(SYS_openat2, directory, name, &how, sizeof how));
}

bool isUnavailable(int error) {
    // Sandboxes give either of these for calls that they do not know.
    return error == ENOSYS || error == EPERM;
}

#else

std::optional<bool> isMountRoot(int) {
    return std::nullopt;
}

int openRefusingMounts(int, const char*) {
    errno = ENOSYS;
    return -1;
}

bool isUnavailable(int error) {
    return error == ENOSYS;
}

#endif

} // namespace

int DirectoryHandle::openRoot(DirectoryHandle& opened) {
    opened.descriptor_ =
        FileDescriptor(uninterrupted([] { return ::open("/", searchOnly | directoryFlags); }));
    return errorOf(opened.descriptor_.get());
}

int DirectoryHandle::openForSearch(const char* name, DirectoryHandle& opened) const {
    return openAt(descriptor_.get(), name, searchOnly | O_NOFOLLOW, opened);
}

int DirectoryHandle::open(const std::string& path, FinalLink link, DirectoryHandle& opened) {
    return openAt(AT_FDCWD, path.c_str(), O_RDONLY | (link == FinalLink::follow ? 0 : O_NOFOLLOW), opened);
}

int DirectoryHandle::openChild(const char* name, Mounts mounts, DirectoryHandle& opened) const {
    return mounts == Mounts::enter ? openAt(descriptor_.get(), name, O_RDONLY | O_NOFOLLOW, opened)
                                   : openWithinMount(name, opened);
}

int DirectoryHandle::openWithinMount(const char* name, DirectoryHandle& opened) const {
    FileDescriptor descriptor(uninterrupted([&] { return openRefusingMounts(descriptor_.get(), name); }));
    if (descriptor) {
        opened.descriptor_ = std::move(descriptor);
        return opened.rememberIdentity();
    }
    if (!isUnavailable(errno)) {
        return errno;
    }
    if (const int error = openAt(descriptor_.get(), name, O_RDONLY | O_NOFOLLOW, opened); error != 0) {
        return error;
    }
    struct stat own{};
    if (::fstat(descriptor_.get(), &own) != 0) {
        return errno;
    }
    const bool crossed =
        isMountRoot(opened.descriptor_.get()).value_or(own.st_dev != opened.identity_.device);
    return crossed ? EXDEV : 0;
}

int DirectoryHandle::openParent(DirectoryHandle& opened) const {
    return openAt(descriptor_.get(), "..", O_RDONLY | O_NOFOLLOW, opened);
}

int DirectoryHandle::duplicate(DirectoryHandle& copy) const {
    copy.descriptor_ = FileDescriptor(::fcntl(descriptor_.get(), F_DUPFD_CLOEXEC, 0));
    copy.identity_ = identity_;
    return errorOf(copy.descriptor_.get());
}

int DirectoryHandle::lookUp(const char* name, EntryStatus& status) const {
    // The unit of `st_blocks`, whatever the block size of the file system.
    constexpr std::int64_t blockSize = 512;
    struct stat found{};
    if (uninterrupted([&] { return ::fstatat(descriptor_.get(), name, &found, AT_SYMLINK_NOFOLLOW); }) != 0) {
        return errno;
    }
    status = {.kind = kindFromMode(found.st_mode),
              .identity = {.device = found.st_dev, .inode = found.st_ino},
              .size = found.st_size,
              .allocatedSize = found.st_blocks * blockSize,
              .linkCount = found.st_nlink};
    return 0;
}

int DirectoryHandle::completeKind(const char* name, EntryKind& kind) const {
    EntryStatus status{.kind = kind};
    const int error = kind == EntryKind::unknown ? lookUp(name, status) : 0;
    kind = status.kind;
    return error;
}

std::optional<std::string> DirectoryHandle::linkDestination(const char* name) const {
    std::array<char, PATH_MAX> target{};
    const ssize_t length = ::readlinkat(descriptor_.get(), name, target.data(), target.size());
    if (length < 0) {
        return std::nullopt;
    }
    return std::string(target.data(), static_cast<std::size_t>(length));
}

int DirectoryHandle::removeFile(const char* name) const {
    return errorOf(uninterrupted([&] { return ::unlinkat(descriptor_.get(), name, 0); }));
}

int DirectoryHandle::removeDirectory(const char* name) const {
    return errorOf(uninterrupted([&] { return ::unlinkat(descriptor_.get(), name, AT_REMOVEDIR); }));
}

bool DirectoryHandle::permitsChanges() const {
    return ::faccessat(descriptor_.get(), ".", W_OK | X_OK, AT_EACCESS) == 0;
}

int DirectoryHandle::rewind() const {
    return ::lseek(descriptor_.get(), 0, SEEK_SET) < 0 ? errno : 0;
}

int DirectoryHandle::openAt(int directory, const char* name, int flags, DirectoryHandle& opened) {
    FileDescriptor descriptor(
        uninterrupted([&] { return ::openat(directory, name, O_DIRECTORY | O_CLOEXEC | flags); }));
    if (!descriptor) {
        return errno;
    }
    opened.descriptor_ = std::move(descriptor);
    return opened.rememberIdentity();
}

int DirectoryHandle::rememberIdentity() {
    struct stat status{};
    if (::fstat(descriptor_.get(), &status) != 0) {
        return errno;
    }
    identity_ = {.device = status.st_dev, .inode = status.st_ino};
    return 0;
}

#ifdef __linux__

int DirectoryHandle::readEntries(DirectoryListing& listing, std::size_t nameBytesLimit, bool& atEnd) const {
    // Not on the stack, which may be small, and allocated once for a million folders.
    constexpr std::size_t blockSize = 32768;
    static thread_local std::vector<char> block(blockSize);
    atEnd = false;
    while (listing.nameBytes() < nameBytesLimit) {
        const ssize_t length =
            uninterrupted([&] { return ::getdents64(descriptor_.get(), block.data(), block.size()); });
        if (length < 0) {
            return errno;
        }
        if (length == 0) {
            atEnd = true;
            return 0;
        }
        for (std::size_t offset = 0; offset < static_cast<std::size_t>(length);) {
            const char* record = block.data() + offset;
            decltype(dirent64::d_reclen) recordLength = 0;
            std::memcpy(&recordLength, record + offsetof(dirent64, d_reclen), sizeof recordLength);
            const std::string_view name(record + offsetof(dirent64, d_name));
            if (!isDotOrDotDot(name)) {
                const auto type = static_cast<unsigned char>(record[offsetof(dirent64, d_type)]);
                listing.add(name, kindFromType(type));
            }
            offset += recordLength;
        }
    }
    return 0;
}

#else

// Reads the whole directory at once: other systems do not promise that a stream goes on after removals.
int DirectoryHandle::readEntries(DirectoryListing& listing, std::size_t, bool& atEnd) const {
    atEnd = false;
    FileDescriptor copy(::openat(descriptor_.get(), ".", O_RDONLY | directoryFlags));
    if (!copy) {
        return errno;
    }
    const DirectoryStream stream(::fdopendir(copy.get()));
    if (!stream) {
        return errno;
    }
    (void)copy.release();
    while (true) {
        errno = 0;
        const dirent* entry = ::readdir(stream.get());
        if (entry == nullptr) {
            break;
        }
        const std::string_view name(static_cast<const char*>(entry->d_name));
        if (!isDotOrDotDot(name)) {
            listing.add(name, kindFromType(entry->d_type));
        }
    }
    atEnd = errno == 0;
    return errno;
}

#endif

} // namespace zentrill
