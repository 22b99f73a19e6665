#include "process/ChildEnding.h"

#include <chrono>
#include <csignal>

namespace zentrill::child_ending {

namespace {

using namespace std::chrono_literals;
using Clock = OutputPump::Clock;

/// Between the polite and the final signal to a group.
constexpr auto gracePeriod = 150ms;
constexpr auto waitAfterGroupKill = 1s;
constexpr auto waitAfterSingleSignal = 500ms;
/// A killed child ends at once, unless it is stuck in a system call.
constexpr auto waitAtOnce = 250ms;

} // namespace

void endGroup(ChildProcess& child, OutputPump& pump) {
    // Stopped first, so that it cannot start more processes while its group is being ended.
    child.signal(SIGSTOP);
    child.signalGroup(SIGTERM);
    pump.pause(gracePeriod);
    child.signalGroup(SIGKILL);
    static_cast<void>(pump.waitForChild(Clock::now() + waitAfterGroupKill));
}

void endAlone(ChildProcess& child, OutputPump& pump) {
    child.signal(SIGTERM);
    if (pump.waitForChild(Clock::now() + waitAfterSingleSignal)) {
        return;
    }
    child.signal(SIGKILL);
    static_cast<void>(pump.waitForChild(Clock::now() + waitAfterSingleSignal));
}

void endAtOnce(ChildProcess& child, const ChildEndNotice& childEnd) {
    child.signalGroup(SIGKILL);
    child.signal(SIGKILL);
    static_cast<void>(childEnd.wait(waitAtOnce));
}

} // namespace zentrill::child_ending
