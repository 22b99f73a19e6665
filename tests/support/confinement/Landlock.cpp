#include "support/confinement/Landlock.h"

#include "support/confinement/Check.h"

#include <algorithm>
#include <cstdint>
#include <linux/landlock.h>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace zentrill::confinement {

namespace {

/// Debian 12's headers are older than the third version.
constexpr std::uint64_t truncateFile = 1ULL << 14;

std::uint64_t changesInVersion(int version) {
    std::uint64_t changes = LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_REMOVE_DIR |
                            LANDLOCK_ACCESS_FS_REMOVE_FILE | LANDLOCK_ACCESS_FS_MAKE_CHAR |
                            LANDLOCK_ACCESS_FS_MAKE_DIR | LANDLOCK_ACCESS_FS_MAKE_REG |
                            LANDLOCK_ACCESS_FS_MAKE_SOCK | LANDLOCK_ACCESS_FS_MAKE_FIFO |
                            LANDLOCK_ACCESS_FS_MAKE_BLOCK | LANDLOCK_ACCESS_FS_MAKE_SYM;
    if (version >= 2) {
        changes |= LANDLOCK_ACCESS_FS_REFER;
    }
    if (version >= 3) {
        changes |= truncateFile;
    }
    return changes;
}

class Ruleset {
public:
    explicit Ruleset(std::uint64_t changes) {
        const landlock_ruleset_attr attributes{.handled_access_fs = changes};
        descriptor_ = check(::syscall(SYS_landlock_create_ruleset, &attributes, sizeof attributes, 0),
                            "Landlock ruleset");
    }

    ~Ruleset() { ::close(descriptor_); }

    Ruleset(const Ruleset&) = delete;
    Ruleset& operator=(const Ruleset&) = delete;
    Ruleset(Ruleset&&) = delete;
    Ruleset& operator=(Ruleset&&) = delete;

    void permit(const std::string& path, std::uint64_t changes) const {
        const int at = check(::open(path.c_str(), O_PATH | O_CLOEXEC), path);
        const landlock_path_beneath_attr rule{.allowed_access = changes, .parent_fd = at};
        const long result =
            ::syscall(SYS_landlock_add_rule, descriptor_, LANDLOCK_RULE_PATH_BENEATH, &rule, 0);
        const int error = errno;
        ::close(at);
        errno = error;
        check(result, path);
    }

    void enter() const {
        if (::syscall(SYS_landlock_restrict_self, descriptor_, 0) == 0) {
            return;
        }
        // Who may not administrate the system has to give up programs with rights of their own first.
        check(::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0), "no new privileges");
        check(::syscall(SYS_landlock_restrict_self, descriptor_, 0), "Landlock");
    }

private:
    int descriptor_ = -1;
};

} // namespace

int landlockVersion() {
    const long version = ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
    return version < 0 ? 0 : static_cast<int>(version);
}

void enterLandlock(const std::vector<std::string>& writable, int newest) {
    const std::uint64_t changes = changesInVersion(std::min(landlockVersion(), newest));
    const Ruleset ruleset(changes);
    for (const std::string& folder : writable) {
        ruleset.permit(folder, changes);
    }
    const std::uint64_t writing = changes & (LANDLOCK_ACCESS_FS_WRITE_FILE | truncateFile);
    for (const char* device : {"/dev/null", "/dev/zero", "/dev/full", "/dev/random", "/dev/urandom",
                               "/dev/tty", "/dev/ptmx", "/dev/pts"}) {
        if (::access(device, F_OK) == 0) {
            ruleset.permit(device, writing);
        }
    }
    ruleset.enter();
}

} // namespace zentrill::confinement
