#pragma once

#include <cstdint>

namespace zentrill {

/// 32 uniform bits from the system's cryptographically secure generator.
[[nodiscard]] std::uint32_t secureRandomBits() noexcept;

} // namespace zentrill
