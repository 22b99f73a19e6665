#include "support/confinement/OwnUser.h"

#include "support/confinement/Check.h"

#include <grp.h>
#include <stdexcept>

#include <pwd.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zentrill::confinement {

namespace {

/// Above the ids that are handed out to people and services; no two processes at a time have the same.
uid_t freeUser(const std::string& folder) {
    constexpr uid_t farAbove = 1'000'000'000;
    // Where a container knows no others than the first 65,536.
    constexpr uid_t lastResort = 61'184;
    constexpr uid_t lastResorts = 4'000;
    const auto process = static_cast<uid_t>(::getpid());
    for (const uid_t user : {farAbove + process, lastResort + process % lastResorts}) {
        if (::getpwuid(user) == nullptr && ::chown(folder.c_str(), user, user) == 0) {
            return user;
        }
    }
    throw std::system_error(errno, std::generic_category(), "a user id of its own");
}

} // namespace

void becomeOwnUser(const std::vector<std::string>& writable) {
    if (::geteuid() != 0) {
        throw std::runtime_error("only root can become another user");
    }
    const uid_t user = freeUser(writable.front());
    for (const std::string& folder : writable) {
        check(::chown(folder.c_str(), user, user), folder);
    }
    becomeOwnerOf(writable.front());
}

void becomeOwnerOf(const std::string& folder) {
    struct stat status{};
    check(::stat(folder.c_str(), &status), folder);
    if (status.st_uid == 0 || status.st_gid == 0) {
        throw std::runtime_error(folder + " belongs to root");
    }
    check(::setgroups(0, nullptr), "setgroups");
    check(::setresgid(status.st_gid, status.st_gid, status.st_gid), "setresgid");
    check(::setresuid(status.st_uid, status.st_uid, status.st_uid), "setresuid");
    // Otherwise what /proc tells about the process itself is root's alone from here on.
    check(::prctl(PR_SET_DUMPABLE, 1, 0, 0, 0), "dumpable");
}

} // namespace zentrill::confinement
