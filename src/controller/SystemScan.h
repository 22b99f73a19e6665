#pragma once

#include "controller/OperationContext.h"
#include "controller/ScanSnapshot.h"

namespace zentrill {

/// Looks at everything that the window shows: the applications of `context.apps`, the local models, the
/// Docker inventory. The disk is looked at on the calling thread, the worker, which alone logs, while Docker
/// answers on a thread that is gone when this returns. Takes as long as it takes, but ends early, with an
/// incomplete snapshot, once the controller is gone.
[[nodiscard]] ScanSnapshot collectScan(const OperationContext& context);

} // namespace zentrill
