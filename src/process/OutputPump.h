#pragma once

#include "platform/FileDescriptor.h"
#include "process/DataBox.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <string>

namespace zentrill {

/// The poll loop of one command: reads both of its pipes for as long as its owner waits for something, so
/// that the command never blocks on a full pipe.
class OutputPump {
public:
    using Clock = std::chrono::steady_clock;

    /// Owns the reading ends, which must not block. `childEnd` and `interruption` are descriptors that become
    /// readable when the child has ended and when all waiting is to stop.
    OutputPump(FileDescriptor output, FileDescriptor errorOutput, int childEnd, int interruption) noexcept;

    /// Reads until the child has ended (true) or the deadline has passed or the interruption came (false).
    /// Processes that the child left behind may hold the pipes open; they are not waited for.
    [[nodiscard]] bool waitForChild(Clock::time_point deadline);

    /// Reads until both streams have ended, after which no output can come (true), or until the deadline has
    /// passed or the interruption came (false). A process that the child left behind may keep a stream open.
    [[nodiscard]] bool settle(Clock::time_point deadline);

    /// Reads for the whole of `time`, even when both streams have ended before; an interruption ends it.
    void pause(Clock::duration time);

    [[nodiscard]] bool wasInterrupted() const noexcept { return interrupted_; }

    /// Reads what the pipes hold at this moment, standard output first, and closes them.
    void drain();

    [[nodiscard]] DataBox::Text takeOutput() { return output_.box.take(); }

    [[nodiscard]] DataBox::Text takeErrorOutput() { return errorOutput_.box.take(); }

private:
    /// What ends a wait before its deadline.
    enum class Event : std::uint8_t { none, childEnd, endOfStreams };

    struct Stream {
        FileDescriptor pipe;
        DataBox box;

        /// Reads once; returns the number of bytes, 0 when there are none now. Closes the pipe at its end.
        std::size_t read(std::size_t limit);
        void drain();
    };

    Stream output_;
    Stream errorOutput_;
    int childEnd_;
    int interruption_;
    bool interrupted_ = false;

    [[nodiscard]] bool haveEnded() const noexcept { return !output_.pipe && !errorOutput_.pipe; }

    /// Whether `event` came.
    [[nodiscard]] bool pumpUntil(Clock::time_point deadline, Event event);
};

} // namespace zentrill
