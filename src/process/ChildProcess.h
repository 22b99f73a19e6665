#pragma once

#include <cstdint>

#include <sys/types.h>

namespace zentrill {

/// A child of this process from its start until it is reaped. Its process ID stays reserved until then, so
/// that no signal sent here can reach another process.
///
/// Destroying it before `reap` kills the child and its group.
class ChildProcess {
public:
    /// Takes over the child `pid`, for which nobody else may wait.
    explicit ChildProcess(pid_t pid) noexcept;
    ~ChildProcess();

    ChildProcess(ChildProcess&& other) noexcept;
    ChildProcess& operator=(ChildProcess&&) = delete;
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    [[nodiscard]] pid_t id() const noexcept { return pid_; }

    /// Whether the child led a process group of its own, other than this process's, when it was taken over.
    [[nodiscard]] bool ownsGroup() const noexcept { return ownsGroup_; }

    void signal(int number) noexcept;

    /// Does nothing unless the child owns its group.
    void signalGroup(int number) noexcept;

    /// Reaps the child, which frees its process ID, and returns its exit status or the number of the signal
    /// that ended it. -1 if the child still runs, in which case it is killed and reaped later, or if the
    /// system has discarded its status. No signal is sent afterwards.
    std::int32_t reap();

private:
    pid_t pid_;
    bool ownsGroup_;
    bool held_ = true;

    [[nodiscard]] bool isStillOurs() noexcept;
};

} // namespace zentrill
