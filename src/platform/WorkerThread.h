#pragma once

#include <string_view>

namespace zentrill {

/// Makes the calling thread known to debuggers and profilers as `label`, cut to what the system keeps (15
/// characters on Linux), and on a Mac tells the scheduler that a user waits for its work.
void beginWorkerThread(std::string_view label) noexcept;

} // namespace zentrill
