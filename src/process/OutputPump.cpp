#include "process/OutputPump.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <span>
#include <utility>

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace zentrill {

namespace {

constexpr std::size_t largestRead = std::size_t{64} * 1024;
constexpr std::size_t drainStep = 4096;

/// `poll` with the precision of the clock where the system offers that: a rounded wait would make every
/// command up to a millisecond longer.
int pollFor(std::span<pollfd> entries, OutputPump::Clock::duration limit) {
    using namespace std::chrono;
    const auto bounded = std::clamp<OutputPump::Clock::duration>(limit, 0s, 60s);
    const auto count = static_cast<nfds_t>(entries.size());
#ifdef __APPLE__
    return ::poll(entries.data(), count, static_cast<int>(ceil<milliseconds>(bounded).count()));
#else
    const auto whole = floor<seconds>(bounded);
    const timespec time{.tv_sec = whole.count(), .tv_nsec = nanoseconds(bounded - whole).count()};
    return ::ppoll(entries.data(), count, &time, nullptr);
#endif
}

} // namespace

OutputPump::OutputPump(FileDescriptor output, FileDescriptor errorOutput, int childEnd,
                       int interruption) noexcept
    : output_{.pipe = std::move(output), .box = DataBox()},
      errorOutput_{.pipe = std::move(errorOutput), .box = DataBox()},
      childEnd_(childEnd),
      interruption_(interruption) {}

bool OutputPump::waitForChild(Clock::time_point deadline) {
    return pumpUntil(deadline, Event::childEnd);
}

bool OutputPump::settle(Clock::time_point deadline) {
    return pumpUntil(deadline, Event::endOfStreams);
}

void OutputPump::pause(Clock::duration time) {
    static_cast<void>(pumpUntil(Clock::now() + time, Event::none));
}

void OutputPump::drain() {
    output_.drain();
    errorOutput_.drain();
}

bool OutputPump::pumpUntil(Clock::time_point deadline, Event event) {
    const auto isSettled = [&] { return event == Event::endOfStreams && haveEnded(); };
    while (!interrupted_ && !isSettled()) {
        const auto remaining = deadline - Clock::now();
        // `poll` skips negative descriptors: a stream at its end, the child when it is not waited for.
        std::array<pollfd, 4> entries{{
            {.fd = interruption_, .events = POLLIN, .revents = 0},
            {.fd = event == Event::childEnd ? childEnd_ : -1, .events = POLLIN, .revents = 0},
            {.fd = output_.pipe.get(), .events = POLLIN, .revents = 0},
            {.fd = errorOutput_.pipe.get(), .events = POLLIN, .revents = 0},
        }};
        if (pollFor(entries, remaining) > 0) {
            interrupted_ = entries[0].revents != 0;
            if (entries[2].revents != 0) {
                output_.read(largestRead);
            }
            if (entries[3].revents != 0) {
                errorOutput_.read(largestRead);
            }
            if (entries[1].revents != 0) {
                return true;
            }
        }
        if (remaining <= Clock::duration::zero()) {
            break;
        }
    }
    return isSettled();
}

std::size_t OutputPump::Stream::read(std::size_t limit) {
    std::array<char, largestRead> buffer; // NOLINT(cppcoreguidelines-pro-type-member-init): read fills it
    const ssize_t count = ::read(pipe.get(), buffer.data(), std::min(limit, buffer.size()));
    if (count > 0) {
        box.append({buffer.data(), static_cast<std::size_t>(count)});
        return static_cast<std::size_t>(count);
    }
    if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
        pipe.reset();
    }
    return 0;
}

/// Reads no more than the pipe holds at the start: a process that was left behind and goes on writing must
/// not keep the command from returning.
void OutputPump::Stream::drain() {
    int available = 0;
    if (pipe && ::ioctl(pipe.get(), FIONREAD, &available) == 0) {
        auto left = static_cast<std::size_t>(available);
        while (left > 0) {
            const std::size_t count = read(std::min(left, drainStep));
            if (count == 0) {
                break;
            }
            left -= count;
        }
    }
    pipe.reset();
}

} // namespace zentrill
