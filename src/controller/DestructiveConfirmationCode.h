#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

/// The code that the user types to authorise a destructive action: exactly eight ASCII digits, leading zeros
/// kept.
namespace zentrill::DestructiveConfirmationCode {

inline constexpr std::size_t length = 8;

/// A code from the system's secure random generator. It may be the same as the previous one.
[[nodiscard]] std::string generate();

/// A code from `randomValue`, taken modulo 100,000,000.
[[nodiscard]] std::string generate(const std::function<std::uint32_t()>& randomValue);

/// Uniform in 0 to 99,999,999; cryptographically secure. `bits` supplies 32 uniform bits per call.
[[nodiscard]] std::uint32_t uniformValue(const std::function<std::uint32_t()>& bits);

/// The part of a typed text that the code field may show: its ASCII digits, at most the first eight.
[[nodiscard]] std::string filteredInput(std::string_view text);

/// Whether `input` is eight ASCII digits and equal to `expected`; it is neither filtered nor trimmed.
[[nodiscard]] bool matches(std::string_view input, std::string_view expected) noexcept;

} // namespace zentrill::DestructiveConfirmationCode
