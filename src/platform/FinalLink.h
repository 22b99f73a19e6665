#pragma once

#include <cstdint>

namespace zentrill {

/// Whether a path that ends in a symbolic link is followed there, or refused.
enum class FinalLink : std::uint8_t { refuse, follow };

} // namespace zentrill
