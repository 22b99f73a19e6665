#pragma once

#include <functional>
#include <optional>
#include <string>

namespace zentrill::test {

/// Drops every right of the superuser for good; no change for any other user. Throws if that fails.
void becomeOrdinaryUser();

/// Makes that user the owner of the folder at `path` and of everything in it. Throws if that fails.
void giveToOrdinaryUser(const std::string& path);

/// Why there cannot be things of two users here, or nothing.
[[nodiscard]] std::optional<std::string> twoUsersObstacle();

/// Runs `body` in a child as an ordinary user; false if an expectation failed.
[[nodiscard]] bool passesAsOrdinaryUser(const std::function<void()>& body);

} // namespace zentrill::test
