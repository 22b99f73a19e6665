#pragma once

#include "controller/OperationContext.h"
#include "controller/ScanSnapshot.h"

namespace zentrill {

/// Looks at everything that the window shows: the applications of `context.apps`, the local models, the
/// Docker inventory. Logs what it finds; runs on the worker and takes as long as it takes, but ends early,
/// with an incomplete snapshot, once the controller is gone.
[[nodiscard]] ScanSnapshot collectScan(const OperationContext& context);

} // namespace zentrill
