#pragma once

#include <ctime>
#include <string>

namespace zentrill {

/// Writes the time stamps of the activity log, "[14:03:27] ", in the user's time zone. Space for the stamp is
/// added where a line is written, and filled where it is appended, so that appending neither allocates nor
/// copies the line. Not for several threads at once.
///
///     std::string entry = LogClock::roomFor(message);    // any thread
///     clock.stamp(entry);                                // the log's own thread
class LogClock {
public:
    /// `message` after as many bytes as a stamp needs.
    [[nodiscard]] static std::string roomFor(const std::string& message);

    /// Fills the space at the front of `entry` with the stamp of this moment.
    void stamp(std::string& entry) { stamp(entry, std::time(nullptr)); }

    /// The same for the moment `now`. Formatted once a second, however many lines carry it.
    void stamp(std::string& entry, std::time_t now);

private:
    std::time_t formattedSecond_ = 0;
    /// Empty before the first stamp.
    std::string stamp_;
};

} // namespace zentrill
