#include "Confinement.h"

#include "support/ChildProcess.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <grp.h>
#include <sched.h>
#include <system_error>

#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zentrill::test {

namespace {

pid_t checkedFork() {
    std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child < 0) {
        throw std::system_error(errno, std::generic_category(), "fork");
    }
    if (child == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    }
    return child;
}

} // namespace

bool passesAsOrdinaryUser(const std::function<void()>& body) {
    return passesInChild([&body] {
        ASSERT_EQ(::setgroups(0, nullptr), 0);
        ASSERT_EQ(::setresgid(ordinaryUser, ordinaryUser, ordinaryUser), 0);
        ASSERT_EQ(::setresuid(ordinaryUser, ordinaryUser, ordinaryUser), 0);
        body();
    });
}

bool passesWithPrivateMounts(const std::function<void()>& body) {
    return passesInChild([&body] {
        ASSERT_EQ(::unshare(CLONE_NEWNS), 0);
        ASSERT_EQ(::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr), 0);
        body();
    });
}

std::string memoryFolder() {
    return ::access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp";
}

BackgroundLoop::BackgroundLoop(const std::function<void()>& body) : child_(checkedFork()) {
    if (child_ == 0) {
        while (true) {
            body();
        }
    }
}

BackgroundLoop::~BackgroundLoop() {
    ::kill(child_, SIGKILL);
    while (::waitpid(child_, nullptr, 0) < 0 && errno == EINTR) {
    }
}

} // namespace zentrill::test
