#include "platform/RemovalDomain.h"

#include "platform/FileDescriptor.h"

#include <cerrno>
#include <cstdint>

#ifdef __linux__
#include <linux/landlock.h>

#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>
#endif

namespace zentrill {

#ifdef __linux__

namespace {

/// Debian 12's headers are older than the third version.
constexpr std::uint64_t truncateFile = 1ULL << 14;

constexpr std::uint64_t removals = LANDLOCK_ACCESS_FS_REMOVE_DIR | LANDLOCK_ACCESS_FS_REMOVE_FILE;

int landlockVersion() noexcept {
    const long version = ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
    return version < 0 ? 0 : static_cast<int>(version);
}

/// What a domain forbids. A kernel refuses rules about rights that it does not know.
std::uint64_t changesKnownTo(int version) noexcept {
    std::uint64_t changes = removals | LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_MAKE_CHAR |
                            LANDLOCK_ACCESS_FS_MAKE_DIR | LANDLOCK_ACCESS_FS_MAKE_REG |
                            LANDLOCK_ACCESS_FS_MAKE_SOCK | LANDLOCK_ACCESS_FS_MAKE_FIFO |
                            LANDLOCK_ACCESS_FS_MAKE_BLOCK | LANDLOCK_ACCESS_FS_MAKE_SYM;
    if (version >= 2) {
        changes |= LANDLOCK_ACCESS_FS_REFER; // The first version always refuses it.
    }
    if (version >= 3) {
        changes |= truncateFile;
    }
    return changes;
}

} // namespace

bool hasRemovalDomains() noexcept {
    return landlockVersion() > 0;
}

int enterRemovalDomain(const DirectoryHandle& folder) noexcept {
    const landlock_ruleset_attr attributes{.handled_access_fs = changesKnownTo(landlockVersion())};
    const FileDescriptor rules(
        static_cast<int>(::syscall(SYS_landlock_create_ruleset, &attributes, sizeof attributes, 0)));
    if (!rules) {
        return errno;
    }
    const landlock_path_beneath_attr below{.allowed_access = removals, .parent_fd = folder.descriptor()};
    if (::syscall(SYS_landlock_add_rule, rules.get(), LANDLOCK_RULE_PATH_BENEATH, &below, 0) != 0) {
        return errno;
    }
    // Required of processes without administrative rights; affects this thread alone.
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
        ::syscall(SYS_landlock_restrict_self, rules.get(), 0) != 0) {
        return errno;
    }
    return 0;
}

#else

bool hasRemovalDomains() noexcept {
    return false;
}

int enterRemovalDomain(const DirectoryHandle&) noexcept {
    return ENOSYS;
}

#endif

} // namespace zentrill
