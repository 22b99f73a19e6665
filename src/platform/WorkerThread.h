#pragma once

#include <string_view>

namespace zentrill {

/// Names the calling thread `label` for debuggers and profilers, cut to what the system keeps (15 characters
/// on Linux). On a Mac it also tells the scheduler that a user waits for the thread's work.
void beginWorkerThread(std::string_view label) noexcept;

} // namespace zentrill
