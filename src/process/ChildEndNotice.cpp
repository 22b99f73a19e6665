#include "process/ChildEndNotice.h"

#include "platform/Pipe.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <thread>
#include <utility>

#include <poll.h>
#include <sys/wait.h>
#ifdef __linux__
#include <sys/syscall.h>
#include <unistd.h>
#endif

namespace zentrill {

namespace {

/// An empty descriptor where the system has no process descriptors.
FileDescriptor processDescriptor([[maybe_unused]] pid_t pid) noexcept {
#if defined(__linux__) && defined(SYS_pidfd_open)
    return FileDescriptor(static_cast<int>(::syscall(SYS_pidfd_open, pid, 0)));
#else
    return {};
#endif
}

void waitUntilEnded(pid_t pid) noexcept {
    siginfo_t status{};
    while (::waitid(P_PID, static_cast<id_t>(pid), &status, WEXITED | WNOWAIT) != 0 && errno == EINTR) {
    }
}

/// The thread holds the writing end as long as the child lives; it is detached because a child that cannot
/// be killed would keep it forever.
FileDescriptor descriptorOfWaitingThread(pid_t pid) {
    Pipe pipe = Pipe::open();
    std::thread([pid, held = std::move(pipe.writing)] { waitUntilEnded(pid); }).detach();
    return std::move(pipe.reading);
}

} // namespace

ChildEndNotice::ChildEndNotice(pid_t pid, Method method) {
    if (method == Method::best) {
        descriptor_ = processDescriptor(pid);
    }
    if (!descriptor_) {
        descriptor_ = descriptorOfWaitingThread(pid);
    }
}

bool ChildEndNotice::wait(std::chrono::milliseconds limit) const noexcept {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    for (;;) {
        const auto remaining = std::chrono::ceil<std::chrono::milliseconds>(std::max(
            deadline - std::chrono::steady_clock::now(), std::chrono::steady_clock::duration::zero()));
        pollfd entry{.fd = descriptor_.get(), .events = POLLIN, .revents = 0};
        const int ready = ::poll(&entry, 1, static_cast<int>(remaining.count()));
        if (ready > 0) {
            return true;
        }
        if (ready == 0 || errno != EINTR) {
            return false;
        }
    }
}

} // namespace zentrill
