#pragma once

#include "catalog/PathExpander.h"

namespace zentrill {

/// Expands "~" to the user's present home folder; without one, such a path stays as it is.
[[nodiscard]] PathExpander homePathExpander();

} // namespace zentrill
