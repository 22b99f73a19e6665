#include "support/OrdinaryUser.h"

#include "support/ChildProcess.h"

#include <cerrno>
#include <filesystem>
#include <grp.h>
#include <system_error>

#include <unistd.h>

namespace zentrill::test {

namespace {

/// The one that systems call "nobody".
constexpr unsigned ordinaryUser = 65534;

void require(bool done, const std::string& step) {
    if (!done) {
        throw std::system_error(errno, std::generic_category(), step);
    }
}

} // namespace

void becomeOrdinaryUser() {
    if (::geteuid() != 0) {
        return;
    }
    require(::setgroups(0, nullptr) == 0, "setgroups");
    require(::setgid(ordinaryUser) == 0, "setgid");
    require(::setuid(ordinaryUser) == 0, "setuid");
}

void giveToOrdinaryUser(const std::string& path) {
    if (::geteuid() != 0) {
        return;
    }
    require(::lchown(path.c_str(), ordinaryUser, ordinaryUser) == 0, path);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path)) {
        require(::lchown(entry.path().c_str(), ordinaryUser, ordinaryUser) == 0, entry.path());
    }
}

std::optional<std::string> twoUsersObstacle() {
    if (::geteuid() != 0) {
        return "needs root, who can become another user";
    }
    return std::nullopt;
}

bool passesAsOrdinaryUser(const std::function<void()>& body) {
    return passesInChild([&body] {
        becomeOrdinaryUser();
        body();
    });
}

} // namespace zentrill::test
