#pragma once

#include <cstdint>

namespace zentrill {

/// Whether a symbolic link at the end of a path is followed or refused.
enum class FinalLink : std::uint8_t { refuse, follow };

} // namespace zentrill
