#include "models/DecimalInteger.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <limits>
#include <string>
#include <system_error>

namespace zentrill {

namespace {

/// Digits of the largest 64-bit integer.
constexpr std::size_t mostDigits = std::numeric_limits<std::int64_t>::digits10 + 1;

std::optional<std::int64_t> wholeInteger(std::string_view text) {
    std::int64_t value = 0;
    const char* begin = text.data(); // NOLINT(bugprone-suspicious-stringview-data-usage): read up to `end`
    const char* end = begin + text.size();
    const auto [stop, error] = std::from_chars(begin, end, value);
    return error == std::errc() && stop == end ? std::optional(value) : std::nullopt;
}

} // namespace

std::optional<std::int64_t> integerFromDigits(std::string_view text) {
    // std::from_chars takes no plus sign, and must not get the minus of "+-1".
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) {
            return std::nullopt;
        }
    }
    return wholeInteger(text);
}

std::optional<std::int64_t> integerFromNumber(std::string_view number) {
    const std::size_t exponentMark = std::min(number.find_first_of("eE"), number.size());
    const std::string_view mantissa = number.substr(0, exponentMark);
    // Not always a point: the JSON parser replaces it by that of the locale.
    const std::size_t point = std::min(mantissa.find_first_not_of("-0123456789"), mantissa.size());
    const std::string_view fraction = mantissa.substr(std::min(point + 1, mantissa.size()));

    std::string digits = std::string(mantissa.substr(0, point)).append(fraction);
    const bool negative = digits.starts_with('-');
    digits.erase(0, std::min(digits.find_first_not_of("-0"), digits.size()));
    if (digits.empty()) {
        return 0;
    }

    std::int64_t exponent = 0;
    if (exponentMark < number.size()) {
        const std::optional<std::int64_t> written = integerFromDigits(number.substr(exponentMark + 1));
        if (!written) {
            return std::nullopt;
        }
        exponent = *written;
    }
    // The value is 0.DIGITS times ten to the power of the integer digits' count.
    const std::size_t significant = digits.find_last_not_of('0') + 1;
    const auto fractionLength = static_cast<std::int64_t>(fraction.size());
    const auto digitCount = static_cast<std::int64_t>(digits.size());
    std::int64_t integerDigits = 0;
    if (__builtin_add_overflow(exponent, digitCount - fractionLength, &integerDigits) ||
        integerDigits < static_cast<std::int64_t>(significant) ||
        integerDigits > static_cast<std::int64_t>(mostDigits)) {
        return std::nullopt;
    }
    digits.resize(static_cast<std::size_t>(integerDigits), '0');
    return wholeInteger((negative ? "-" : "") + digits);
}

} // namespace zentrill
