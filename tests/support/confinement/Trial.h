#pragma once

#include <functional>
#include <optional>
#include <string>

namespace zentrill::confinement {

/// Runs `body` in a child process and returns what it threw, or nothing when it came to its end. What would
/// change this process for good, and leave it neither here nor there when it fails half-way, is tried so.
[[nodiscard]] std::optional<std::string> failureInChild(const std::function<void()>& body);

} // namespace zentrill::confinement
