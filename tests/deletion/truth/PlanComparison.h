#pragma once

#include "truth/TrialDeletion.h"

#include <optional>
#include <string>

namespace zentrill::test {

/// Compares what the plan said beforehand with the report and with the disk. A complaint, or nothing when
/// they agree.
[[nodiscard]] std::optional<std::string> comparePlan(const TrialDeletion& trial);

} // namespace zentrill::test
