#pragma once

#include <cstdint>

#include <sys/types.h>

namespace zentrill {

/// A child of this process from its start until it is reaped. Its end is noticed without reaping it, and as
/// long as it is not reaped its number belongs to nobody else: no signal sent here can reach a stranger.
///
/// Destroying it before `reap` kills the child and its group.
class ChildProcess {
public:
    /// Takes over the child `pid`, which nobody else will wait for.
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

    /// Gives the child's number back to the system and returns the exit status, or the number of the signal
    /// that ended it. -1 if the child still runs, in which case it is killed and left to be reaped later,
    /// or if the system has thrown its status away. No signal is sent afterwards.
    std::int32_t reap();

private:
    pid_t pid_;
    bool ownsGroup_;
    bool held_ = true;

    [[nodiscard]] bool isStillOurs() noexcept;
};

} // namespace zentrill
