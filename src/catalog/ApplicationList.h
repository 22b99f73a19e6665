#pragma once

#include "catalog/AppInfo.h"

#include <vector>

namespace zentrill {

/// Every tool of the detection catalog as the applications list shows it, in the list's own order and
/// neither found nor selected yet. Names are unique.
[[nodiscard]] std::vector<AppInfo> applicationList();

} // namespace zentrill
