#pragma once

#include "controller/ResultAlert.h"
#include "deletion/SelfUninstallResult.h"

namespace zentrill {

/// The result of a self-uninstall that failed: why, what is gone and what is still there.
[[nodiscard]] ResultAlert selfUninstallFailure(const SelfUninstallResult& result);

} // namespace zentrill
