#include "platform/ByteCountFormatter.h"

namespace zentrill {

namespace {

constexpr std::int64_t bytesPerMegabyte = 1'000'000;
constexpr std::int64_t bytesPerGigabyte = 1'000'000'000;

/// `value` in units of 1/`parts`, trailing zeros of the fraction dropped: (466, 100) is "4.66".
std::string decimal(std::int64_t value, std::int64_t parts) {
    std::string text = std::to_string(value / parts);
    std::int64_t rest = value % parts;
    if (rest == 0) {
        return text;
    }
    text += '.';
    for (std::int64_t place = parts / 10; rest != 0; place /= 10) {
        text += static_cast<char>('0' + (rest / place));
        rest %= place;
    }
    return text;
}

/// `byteCount` in units of `unit`, rounded half up, without overflow near the largest count.
std::int64_t rounded(std::int64_t byteCount, std::int64_t unit) {
    return (byteCount / unit) + (byteCount % unit >= (unit + 1) / 2 ? 1 : 0);
}

} // namespace

std::string formattedByteCount(std::int64_t byteCount) {
    // 999.95 MB would round to 1000.0 MB; from there on it is a gigabyte.
    const std::int64_t tenthsOfMegabytes = rounded(byteCount, bytesPerMegabyte / 10);
    if (tenthsOfMegabytes < 10'000) {
        return decimal(tenthsOfMegabytes, 10) + " MB";
    }
    return decimal(rounded(byteCount, bytesPerGigabyte / 100), 100) + " GB";
}

} // namespace zentrill
