#pragma once

#include "catalog/PathExpander.h"

namespace zentrill {

/// Expands "~" to the present home folder of the user. While there is none such a path stays as it is, which
/// leads nowhere, rather than becoming a path below the root.
[[nodiscard]] PathExpander homePathExpander();

} // namespace zentrill
