#include "support/ChildProcess.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <exception>
#include <system_error>

#include <sys/wait.h>
#include <unistd.h>

#ifdef __linux__
#include <sys/prctl.h>
#endif

namespace zentrill::test {

namespace {

pid_t checkedFork() {
    std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child < 0) {
        throw std::system_error(errno, std::generic_category(), "fork");
    }
    return child;
}

int waitFor(pid_t child) {
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) {
            throw std::system_error(errno, std::generic_category(), "waitpid");
        }
    }
    return status;
}

} // namespace

bool passesInChild(const std::function<void()>& body) {
    const pid_t child = checkedFork();
    if (child == 0) {
        try {
            body();
        } catch (const std::exception& error) {
            ADD_FAILURE() << "the child threw: " << error.what();
        }
        std::fflush(nullptr);
        ::_exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = waitFor(child); // Not constant: the macros below take its address on a Mac.
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

BackgroundLoop::BackgroundLoop(const std::function<void()>& body) : child_(checkedFork()) {
    if (child_ == 0) {
#ifdef __linux__
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
#endif
        while (true) {
            body();
        }
    }
}

BackgroundLoop::~BackgroundLoop() {
    ::kill(child_, SIGKILL);
    waitFor(child_);
}

} // namespace zentrill::test
