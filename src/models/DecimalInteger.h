#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace zentrill {

/// The integer that `text` writes in base 10: an optional sign, then only digits. Nothing for any other text
/// and for more than 64 bits.
[[nodiscard]] std::optional<std::int64_t> integerFromDigits(std::string_view text);

/// The integer that a JSON number equals, computed without rounding: 12 for "12", "12.0" and "1.2e1". Nothing
/// for a fraction and for more than 64 bits. `number` has JSON's form, with any character as its decimal
/// point.
[[nodiscard]] std::optional<std::int64_t> integerFromNumber(std::string_view number);

} // namespace zentrill
