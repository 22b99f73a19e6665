#pragma once

#include "truth/TrialDeletion.h"

#include <optional>
#include <string>

namespace zentrill::test {

/// Where a deletion that was run differs from what its report says, or from what it should have done; nothing
/// if all agree.
[[nodiscard]] std::optional<std::string> compareReport(const TrialDeletion& trial);

} // namespace zentrill::test
