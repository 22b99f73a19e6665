#pragma once

#include "support/confinement/Rung.h"

#include <optional>
#include <string>
#include <vector>

namespace zentrill::test {

/// Confines this process on just this rung, even though the test program is confined already. Throws if it
/// cannot.
void takeRung(confinement::Rung rung);

/// Why this machine, or what confines the test program, does not allow the rung; nothing if it does.
[[nodiscard]] std::optional<std::string> rungObstacle(confinement::Rung rung);

/// Those that have no obstacle.
[[nodiscard]] std::vector<confinement::Rung> allowedRungs();

} // namespace zentrill::test
