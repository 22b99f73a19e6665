#pragma once

#include <cstdint>

namespace zentrill {

/// The position of the Safety Shield's switch, which keeps recognised credentials and uncertain data.
enum class SafetyShield : std::uint8_t { off, on };

/// The same of `preserveCredentials`, which is what the options of a removal call it.
[[nodiscard]] constexpr SafetyShield safetyShield(bool preserveCredentials) noexcept {
    return preserveCredentials ? SafetyShield::on : SafetyShield::off;
}

} // namespace zentrill
