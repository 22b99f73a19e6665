#pragma once

#include <cstdint>

namespace zentrill {

/// How far the plan that a review shows has come.
enum class ReviewStage : std::uint8_t { underWay, complete };

} // namespace zentrill
