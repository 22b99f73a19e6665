#include "controller/LogClock.h"

#include <array>

namespace zentrill {

std::string LogClock::stamped(const std::string& message, std::time_t now) {
    if (now != formattedSecond_ || prefix_.empty()) {
        std::tm local{};
        ::localtime_r(&now, &local);
        std::array<char, 16> text{};
        const std::size_t length = std::strftime(text.data(), text.size(), "[%H:%M:%S] ", &local);
        prefix_.assign(text.data(), length);
        formattedSecond_ = now;
    }
    std::string entry;
    entry.reserve(prefix_.size() + message.size());
    entry += prefix_;
    entry += message;
    return entry;
}

} // namespace zentrill
