#pragma once

#include <ctime>
#include <string>

namespace zentrill {

/// Writes the time stamps of the activity log, "[14:03:27] ", in the user's time zone. A line gets the room
/// for its stamp where it is written and the stamp itself where it is appended, so that appending neither
/// allocates nor copies the line. Not for use by several threads at once.
///
///     std::string entry = LogClock::roomFor(message);    // any thread
///     clock.stamp(entry);                                // the log's own thread
class LogClock {
public:
    /// `message` behind as many bytes as a stamp has.
    [[nodiscard]] static std::string roomFor(const std::string& message);

    /// Fills the room at the front of `entry` with the stamp of the present moment.
    void stamp(std::string& entry) { stamp(entry, std::time(nullptr)); }

    /// The same for the moment `now`. Formatted once a second, however many lines carry it.
    void stamp(std::string& entry, std::time_t now);

private:
    std::time_t formattedSecond_ = 0;
    /// Empty before the first stamp.
    std::string stamp_;
};

} // namespace zentrill
