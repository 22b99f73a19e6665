#pragma once

#include "process/CommandExecuting.h"
#include "process/Environment.h"

#include <chrono>

namespace zentrill {

/// Runs programs of the system, without a shell: a name and its arguments go to the kernel as they are.
///
///     ShellCommandRunner runner;
///     const CommandResult result = runner.run("/usr/bin/docker", {"ps"}, CommandExecuting::Timeout{15.0});
///     if (!result.succeeded()) { log(result.diagnostic()); }
///
/// What `run` does, in this order:
///
/// 1. It starts the child with `posix_spawn`: in a process group of its own, with the null device as standard
///    input, the runner's environment, the signals' default handling, and no descriptor of this process but
///    the two pipes for its output.
/// 2. One `poll` loop reads both pipes until the child has ended. The child is never blocked by a full pipe.
/// 3. If the time runs out first, the child is stopped, its group is asked to end (SIGTERM) and killed a
///    little later (SIGKILL). Reading goes on meanwhile.
/// 4. In any case, what the child left behind in its group is asked to end. Reading goes on until both
///    streams have ended, but no longer than the settling time: another process can keep them open for ever.
/// 5. The child is reaped last. Until then its process ID, and that of its group, cannot be given to another
///    process, so that no signal sent above can reach a stranger.
///
/// `shutDown` cuts this short at any step: the group is killed and `run` returns.
///
/// Nothing is thrown: what goes wrong at any of these steps is in the result.
///
/// May be used by any number of threads at once; a runner has no mutable state.
///
/// Pitfalls:
///
/// - `run` blocks: never call it on the main thread.
/// - Only the first 64 MiB of each stream are kept, and a stream that is not UTF-8 is dropped.
///   `CommandResult` says so: ask `stdoutIsWhole` before concluding anything from what `stdout` lacks.
/// - A child that leaves its process group, as daemons do, is beyond reach from then on.
/// - A child that is stuck in a system call is given up after a second, and reaped by a later `run` once it
///   has ended.
/// - Where the process ignores SIGCHLD, the system throws exit statuses away, and they are all -1.
class ShellCommandRunner final : public CommandExecuting {
public:
    /// For output that is still on its way when a child has ended: long enough for a process that is asked to
    /// end with it to write its last lines.
    static constexpr std::chrono::milliseconds defaultSettlingTime{50};

    /// `settlingTime` is how long `run` goes on reading after the child has ended, while any process keeps
    /// one of its output streams open. Once both streams have ended nothing is on its way, and `run` waits no
    /// longer.
    explicit ShellCommandRunner(Environment environment = defaultEnvironment(),
                                std::chrono::milliseconds settlingTime = defaultSettlingTime);

    /// The environment of this process with a `PATH` of the places where the tools are installed: a desktop
    /// application does not inherit the one of the user's shell.
    [[nodiscard]] static Environment defaultEnvironment();

    /// For the end of the process: kills the commands that any runner is running, so that each `run` returns
    /// at once, and makes every later `run` fail with a launch error. Returns when no command is left, after
    /// half a second at the latest. May be called on any thread and any number of times; it cannot be undone.
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
