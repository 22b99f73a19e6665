#pragma once

#include "process/CommandExecuting.h"
#include "process/Environment.h"

#include <chrono>

namespace zentrill {

/// Runs programs of the system, without a shell. Every child leads its own process group and gets the null
/// device as standard input; when `run` returns, the child is gone and whatever it left behind in its group
/// has been told to end. May be used by any number of threads at once.
class ShellCommandRunner final : public CommandExecuting {
public:
    /// For output that is still on its way when a child has ended: long enough for a process that was told to
    /// end with it to say a last word.
    static constexpr std::chrono::milliseconds defaultSettlingTime{50};

    /// `settlingTime` is how long `run` goes on reading after the child has ended, while any process keeps
    /// one of its output streams open. Once both streams have ended nothing is on its way, and `run` waits no
    /// longer.
    explicit ShellCommandRunner(Environment environment = defaultEnvironment(),
                                std::chrono::milliseconds settlingTime = defaultSettlingTime);

    /// The environment of this process with a `PATH` of the places where the tools are installed: a desktop
    /// application does not inherit the one of the user's shell.
    [[nodiscard]] static Environment defaultEnvironment();

    /// For the last moments of the process: kills the commands that any runner is running, whose `run` then
    /// returns at once, and makes every later `run` fail with a launch error. Returns when no command is
    /// left, after half a second at the latest. Callable from any thread, any number of times; there is no
    /// way back.
    static void shutDown() noexcept;

    /// The complete environment of every child.
    [[nodiscard]] const Environment& environment() const noexcept { return environment_; }

    /// A time-out below 0.05 seconds counts as 0.05.
    CommandResult run(const std::string& executable, const std::vector<std::string>& arguments,
                      Timeout timeout = defaultTimeout) override;

private:
    Environment environment_;
    std::chrono::milliseconds settlingTime_;
};

} // namespace zentrill
