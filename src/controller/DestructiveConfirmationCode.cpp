#include "controller/DestructiveConfirmationCode.h"

#include "platform/SecureRandom.h"

#include <algorithm>
#include <limits>

namespace zentrill::DestructiveConfirmationCode {

namespace {

constexpr std::uint32_t codeCount = 100'000'000;

constexpr bool isDigit(char character) noexcept {
    return character >= '0' && character <= '9';
}

} // namespace

std::string generate() {
    return generate([] { return uniformValue(secureRandomBits); });
}

std::string generate(const std::function<std::uint32_t()>& randomValue) {
    const std::string digits = std::to_string(randomValue() % codeCount);
    return std::string(length - digits.size(), '0') + digits;
}

std::uint32_t uniformValue(const std::function<std::uint32_t()>& bits) {
    // Values beyond the last whole multiple would make smaller codes more likely, so they are drawn again.
    constexpr std::uint64_t valueCount = std::uint64_t{std::numeric_limits<std::uint32_t>::max()} + 1;
    constexpr std::uint64_t accepted = valueCount - (valueCount % codeCount);
    std::uint32_t value = bits();
    while (value >= accepted) {
        value = bits();
    }
    return value % codeCount;
}

std::string filteredInput(std::string_view text) {
    std::string digits;
    for (const char character : text) {
        if (digits.size() == length) {
            break;
        }
        if (isDigit(character)) {
            digits.push_back(character);
        }
    }
    return digits;
}

bool matches(std::string_view input, std::string_view expected) noexcept {
    return input.size() == length && std::ranges::all_of(input, isDigit) && input == expected;
}

} // namespace zentrill::DestructiveConfirmationCode
