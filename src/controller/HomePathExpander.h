#pragma once

#include "catalog/PathExpander.h"

namespace zentrill {

/// Expands "~" to the home folder that the user has now; without one such a path stays as it is.
[[nodiscard]] PathExpander homePathExpander();

} // namespace zentrill
