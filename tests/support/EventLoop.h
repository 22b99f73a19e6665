#pragma once

#include <chrono>
#include <functional>

namespace zentrill::test {

/// Runs the event loop of the calling thread until `condition` holds, which is looked at after every turn.
/// False when it does not hold by the deadline.
[[nodiscard]] bool waitUntil(const std::function<bool()>& condition,
                             std::chrono::milliseconds deadline = std::chrono::seconds(30));

} // namespace zentrill::test
