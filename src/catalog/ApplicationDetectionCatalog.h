#pragma once

#include "catalog/ApplicationDetectionRule.h"

#include <vector>

namespace zentrill {

/// The known tools. Built anew by each call; `ApplicationDetectionRegistry` keeps the one that is used.
[[nodiscard]] std::vector<ApplicationDetectionRule> applicationDetectionCatalog();

} // namespace zentrill
