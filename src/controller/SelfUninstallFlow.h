#pragma once

#include "controller/ResultAlert.h"
#include "deletion/SelfUninstallResult.h"

namespace zentrill {

/// What a self-uninstall that did not succeed has to tell: why, what is gone already and what is still there.
[[nodiscard]] ResultAlert selfUninstallFailure(const SelfUninstallResult& result);

} // namespace zentrill
