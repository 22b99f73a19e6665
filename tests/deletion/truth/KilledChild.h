#pragma once

#include <chrono>
#include <functional>

namespace zentrill::test {

/// Runs `body` in a child process and kills that, with all of its threads, once `delay` has passed since the
/// body began. Whether it came to its end before.
[[nodiscard]] bool finishesWithin(std::chrono::nanoseconds delay, const std::function<void()>& body);

} // namespace zentrill::test
