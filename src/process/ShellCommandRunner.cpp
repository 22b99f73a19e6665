#include "process/ShellCommandRunner.h"

#include "platform/HomeDirectory.h"
#include "platform/Paths.h"
#include "platform/Pipe.h"
#include "process/AbandonedChildren.h"
#include "process/ChildEndNotice.h"
#include "process/ChildEnding.h"
#include "process/CommandsInFlight.h"
#include "process/OutputPump.h"
#include "process/SpawnChild.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <new>
#include <system_error>
#include <utility>

namespace zentrill {

namespace {

using namespace std::chrono_literals;
using Timeout = CommandExecuting::Timeout;

constexpr Timeout shortestTimeout = 0.05s;
/// Far beyond any use, and still representable on the clock.
constexpr Timeout longestTimeout = 24h * 365;
constexpr auto shutdownLimit = 500ms;

OutputPump::Clock::time_point deadlineAfter(Timeout timeout) {
    // Compared this way round, a NaN becomes the shortest one.
    const Timeout bounded = timeout > shortestTimeout ? std::min(timeout, longestTimeout) : shortestTimeout;
    return OutputPump::Clock::now() + std::chrono::duration_cast<OutputPump::Clock::duration>(bounded);
}

CommandResult launchFailure(std::string description) {
    CommandResult result;
    result.launchError = std::move(description);
    return result;
}

CommandResult runCommand(const std::string& executable, const std::vector<std::string>& arguments,
                         const Environment& environment, Timeout timeout,
                         std::chrono::milliseconds settlingTime) {
    const CommandsInFlight::Entry flight;
    abandoned_children::reapEnded();

    Pipe output = Pipe::open();
    Pipe errorOutput = Pipe::open();
    SpawnedChild spawned =
        spawnChild(executable, arguments, environment, output.writing.get(), errorOutput.writing.get());
    if (!spawned.child) {
        return launchFailure(spawned.error.message());
    }
    output.writing.reset();
    errorOutput.writing.reset();

    ChildProcess& child = *spawned.child;
    const ChildEndNotice childEnd(child.id());
    OutputPump pump(std::move(output.reading), std::move(errorOutput.reading), childEnd.descriptor(),
                    flight.shutdownDescriptor());
    const bool ended = pump.waitForChild(deadlineAfter(timeout));
    const bool timedOut = !ended && !pump.wasInterrupted();
    if (timedOut && child.ownsGroup()) {
        child_ending::endGroup(child, pump);
    } else if (timedOut) {
        child_ending::endAlone(child, pump);
    }
    child.signalGroup(SIGTERM);
    static_cast<void>(pump.settle(OutputPump::Clock::now() + settlingTime));
    if (pump.wasInterrupted()) {
        child_ending::endAtOnce(child, childEnd);
    }
    pump.drain();

    CommandResult result;
    DataBox::Text outputText = pump.takeOutput();
    DataBox::Text errorText = pump.takeErrorOutput();
    result.stdout = std::move(outputText.text);
    result.stdoutIsWhole = outputText.isWhole;
    result.stderr = std::move(errorText.text);
    result.stderrIsWhole = errorText.isWhole;
    result.exitCode = child.reap();
    result.timedOut = timedOut;
    return result;
}

} // namespace

ShellCommandRunner::ShellCommandRunner(Environment environment, std::chrono::milliseconds settlingTime)
    : environment_(std::move(environment)), settlingTime_(settlingTime) {}

Environment ShellCommandRunner::defaultEnvironment() {
    Environment environment = currentEnvironment();
    const std::string home = homeDirectory();
    environment["PATH"] = "/usr/local/bin:/opt/homebrew/bin:" + paths::appending(home, ".local/bin") + ":" +
                          paths::appending(home, ".npm-global/bin") + ":/usr/bin:/bin:/usr/sbin:/sbin";
    return environment;
}

void ShellCommandRunner::shutDown() noexcept {
    CommandsInFlight::shared().shutDown(shutdownLimit);
}

CommandResult ShellCommandRunner::run(const std::string& executable,
                                      const std::vector<std::string>& arguments, Timeout timeout) {
    try {
        return runCommand(executable, arguments, environment_, timeout, settlingTime_);
    } catch (const std::system_error& error) {
        return launchFailure(error.code().message());
    } catch (const std::bad_alloc&) {
        return launchFailure(std::generic_category().message(ENOMEM));
    }
}

} // namespace zentrill
