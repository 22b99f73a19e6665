#pragma once

#include "controller/OperationContext.h"
#include "controller/ScanSnapshot.h"

namespace zentrill {

/// Looks at everything that the window shows: the applications of `context.apps`, the local models, the
/// Docker inventory. The calling thread, which is the worker, looks at the disk and writes the log; meanwhile
/// another thread, which has ended when this returns, waits for Docker. Has no time limit, but ends early
/// with an incomplete snapshot once the controller is gone.
[[nodiscard]] ScanSnapshot collectScan(const OperationContext& context);

} // namespace zentrill
