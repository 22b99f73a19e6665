#pragma once

#include "support/confinement/Scratch.h"

#include <optional>
#include <string>
#include <vector>

namespace zentrill::confinement {

/// What this process could change though it should not: it tries to write to the canary and to remove it, and
/// to make a nameless file in the folders where that would hurt most. Nothing, when all was refused.
[[nodiscard]] std::optional<std::string> succeededAttempt(const Scratch& scratch,
                                                          const std::vector<std::string>& writable);

} // namespace zentrill::confinement
