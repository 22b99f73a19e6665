#include "support/ChildProcess.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <exception>
#include <grp.h>
#include <stdexcept>
#include <system_error>

#include <sys/wait.h>
#include <unistd.h>

#ifdef __linux__
#include <sched.h>

#include <sys/mount.h>
#endif

namespace zentrill::test {

namespace {

void require(bool done, const char* step) {
    if (!done) {
        throw std::system_error(errno, std::generic_category(), step);
    }
}

} // namespace

bool passesInChild(const std::function<void()>& body) {
    std::fflush(nullptr);
    const pid_t child = ::fork();
    require(child >= 0, "fork");
    if (child == 0) {
        try {
            body();
        } catch (const std::exception& error) {
            ADD_FAILURE() << "the child threw: " << error.what();
        }
        std::fflush(nullptr);
        ::_exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        require(errno == EINTR, "waitpid");
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

void becomeOrdinaryUser() {
    if (::geteuid() != 0) {
        return;
    }
    require(::setgroups(0, nullptr) == 0, "setgroups");
    require(::setgid(ordinaryUserId) == 0, "setgid");
    require(::setuid(ordinaryUserId) == 0, "setuid");
}

#ifdef __linux__

bool canMount() {
    return ::geteuid() == 0;
}

void enterPrivateMountNamespace() {
    require(::unshare(CLONE_NEWNS) == 0, "unshare");
    require(::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0, "mount");
}

void mountMemoryDisk(const std::string& at, const std::string& options) {
    require(::mount("none", at.c_str(), "tmpfs", 0, options.c_str()) == 0, "mount tmpfs");
}

void remountReadOnly(const std::string& at) {
    require(::mount("none", at.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) == 0, "remount");
}

#else

namespace {

[[noreturn]] void noPrivateMounts() {
    throw std::runtime_error("this system has no private mounts");
}

} // namespace

bool canMount() {
    return false;
}

void enterPrivateMountNamespace() {
    noPrivateMounts();
}

void mountMemoryDisk(const std::string& /*at*/, const std::string& /*options*/) {
    noPrivateMounts();
}

void remountReadOnly(const std::string& /*at*/) {
    noPrivateMounts();
}

#endif

} // namespace zentrill::test
