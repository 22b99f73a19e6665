#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace zentrill {

/// The integer that `text` writes in base 10: a sign or none, then digits and nothing else. Nothing when it
/// is of another form or past 64 bits.
[[nodiscard]] std::optional<std::int64_t> integerFromDigits(std::string_view text);

/// The integer that a JSON number equals, computed without rounding: 12 for "12", "12.0" and "1.2e1".
/// Nothing for a fraction and for what is past 64 bits. `number` is of JSON's form,
/// its decimal point any character.
[[nodiscard]] std::optional<std::int64_t> integerFromNumber(std::string_view number);

} // namespace zentrill
