#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>

#include <sys/types.h>

/// What a test needs to know about this process and its children.
namespace zentrill::test {

/// Asks `condition` again and again until it holds; false if it does not within `limit`.
[[nodiscard]] bool eventually(const std::function<bool()>& condition,
                              std::chrono::milliseconds limit = std::chrono::seconds(20));

/// Whether no process with this number runs; one that only waits to be reaped counts as gone.
[[nodiscard]] bool isGone(pid_t pid);

/// Whether this process has no child, not even one to be reaped.
[[nodiscard]] bool hasNoChildren();

/// How many descriptors this process has open.
[[nodiscard]] std::size_t openDescriptorCount();

/// Runs `body` in a forked child and tells whether it returned true. For what changes the process for good.
[[nodiscard]] bool holdsInForkedChild(const std::function<bool()>& body);

/// A file's content, empty if there is none.
[[nodiscard]] std::string contentOf(const std::string& path);

} // namespace zentrill::test
