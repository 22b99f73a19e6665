#pragma once

#include "platform/Pipe.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>

namespace zentrill {

/// Counts the commands that all runners of this process are running, and can end them together: their poll
/// loops watch one descriptor that becomes readable when the process shuts down. Each loop then kills its
/// own child, so that only the thread that started a child ever signals it.
class CommandsInFlight {
public:
    /// One command, counted while the object lives.
    class Entry {
    public:
        /// Throws `std::system_error`: ECANCELED after the shutdown, otherwise why the descriptor could not
        /// be opened.
        explicit Entry(CommandsInFlight& commands = shared());
        ~Entry();

        Entry(const Entry&) = delete;
        Entry& operator=(const Entry&) = delete;
        Entry(Entry&&) = delete;
        Entry& operator=(Entry&&) = delete;

        /// Becomes readable when the process shuts down, and stays so.
        [[nodiscard]] int shutdownDescriptor() const noexcept { return descriptor_; }

    private:
        CommandsInFlight& commands_;
        int descriptor_ = -1;
    };

    /// The one instance of the process; never destroyed, because workers may outlive `main`.
    static CommandsInFlight& shared();

    /// Refuses every further command, wakes the running ones and waits until they are over, but no longer
    /// than `limit`.
    void shutDown(std::chrono::milliseconds limit);

private:
    std::mutex mutex_;
    std::condition_variable idle_;
    std::size_t count_ = 0;
    bool down_ = false;
    Pipe wake_;
};

} // namespace zentrill
