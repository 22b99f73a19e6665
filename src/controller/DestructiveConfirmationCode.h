#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace zentrill {

/// The code that the user types to authorise a destructive action: exactly eight ASCII digits, leading zeros
/// kept.
class DestructiveConfirmationCode {
public:
    static constexpr std::size_t length = 8;

    DestructiveConfirmationCode() = delete;

    /// A code out of `randomValue`, taken modulo 100,000,000. May repeat the code before.
    [[nodiscard]] static std::string
    generate(const std::function<std::uint32_t()>& randomValue = secureRandomValue);

    /// Uniform in 0 to 99,999,999; cryptographically secure. `bits` supplies 32 uniform bits per call.
    [[nodiscard]] static std::uint32_t uniformValue(const std::function<std::uint32_t()>& bits);

    /// What of a typed text may stand in the code field: its ASCII digits, at most the first eight.
    [[nodiscard]] static std::string filteredInput(std::string_view text);

    /// Whether `input` is eight ASCII digits and equal to `expected`; it is neither filtered nor trimmed.
    [[nodiscard]] static bool matches(std::string_view input, std::string_view expected) noexcept;

private:
    [[nodiscard]] static std::uint32_t secureRandomValue();
};

} // namespace zentrill
