#include "controller/LogClock.h"

#include <array>
#include <string_view>

namespace zentrill {

namespace {

constexpr std::string_view room = "[--:--:--] ";

std::string format(std::time_t moment) {
    std::tm local{};
    if (::localtime_r(&moment, &local) == nullptr) {
        return std::string(room);
    }
    std::array<char, room.size() + 1> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), "[%H:%M:%S] ", &local);
    return {text.data(), length};
}

} // namespace

std::string LogClock::roomFor(const std::string& message) {
    std::string entry;
    entry.reserve(room.size() + message.size());
    return entry.append(room).append(message);
}

void LogClock::stamp(std::string& entry, std::time_t now) {
    if (stamp_.empty() || now != formattedSecond_) {
        stamp_ = format(now);
        formattedSecond_ = now;
    }
    entry.replace(0, stamp_.size(), stamp_);
}

} // namespace zentrill
