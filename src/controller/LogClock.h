#pragma once

#include <ctime>
#include <string>

namespace zentrill {

/// Writes the time stamps of the activity log. A stamp is formatted once a second, however many lines carry
/// it. Not for use by several threads at once.
class LogClock {
public:
    /// "[14:03:27] " and `message`, for the present moment in the user's time zone.
    [[nodiscard]] std::string stamped(const std::string& message) {
        return stamped(message, std::time(nullptr));
    }

    /// The same for the moment `now`.
    [[nodiscard]] std::string stamped(const std::string& message, std::time_t now);

private:
    std::time_t formattedSecond_ = -1;
    std::string prefix_;
};

} // namespace zentrill
