#include "process/ChildProcess.h"

#include "process/AbandonedChildren.h"

#include <cerrno>
#include <csignal>
#include <utility>

#include <sys/wait.h>
#include <unistd.h>

namespace zentrill {

namespace {

bool leadsItsOwnGroup(pid_t pid) noexcept {
    const pid_t group = ::getpgid(pid);
    // Some systems do not tell the group of a child that has ended; it was started as the leader of one.
    const bool leads = group == pid || (group < 0 && errno == ESRCH);
    return leads && pid != ::getpgrp();
}

} // namespace

ChildProcess::ChildProcess(pid_t pid) noexcept : pid_(pid), ownsGroup_(leadsItsOwnGroup(pid)) {}

ChildProcess::ChildProcess(ChildProcess&& other) noexcept
    : pid_(other.pid_), ownsGroup_(other.ownsGroup_), held_(std::exchange(other.held_, false)) {}

ChildProcess::~ChildProcess() {
    if (!held_) {
        return;
    }
    signalGroup(SIGKILL);
    signal(SIGKILL);
    reap();
}

void ChildProcess::signal(int number) noexcept {
    if (isStillOurs()) {
        ::kill(pid_, number);
    }
}

void ChildProcess::signalGroup(int number) noexcept {
    if (ownsGroup_ && isStillOurs()) {
        ::kill(-pid_, number);
    }
}

std::int32_t ChildProcess::reap() {
    if (!std::exchange(held_, false)) {
        return -1;
    }
    siginfo_t status{};
    if (::waitid(P_PID, static_cast<id_t>(pid_), &status, WEXITED | WNOHANG) == 0) {
        if (status.si_pid == pid_) {
            return status.si_status;
        }
    } else if (errno == ECHILD) {
        return -1;
    }
    ::kill(pid_, SIGKILL);
    abandoned_children::add(pid_);
    return -1;
}

/// Where this process ignores SIGCHLD, the system reaps the child itself, and its ID may be in use again. No
/// other error says so.
bool ChildProcess::isStillOurs() noexcept {
    siginfo_t status{};
    if (held_ && ::waitid(P_PID, static_cast<id_t>(pid_), &status, WEXITED | WNOHANG | WNOWAIT) != 0 &&
        errno == ECHILD) {
        held_ = false;
    }
    return held_;
}

} // namespace zentrill
