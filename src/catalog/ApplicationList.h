#pragma once

#include "catalog/AppInfo.h"

#include <vector>

namespace zentrill {

/// Every tool of the detection catalog as the list of applications shows it, in the order of that list, not
/// yet found or selected. Names are unique.
[[nodiscard]] std::vector<AppInfo> applicationList();

} // namespace zentrill
