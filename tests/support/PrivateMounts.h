#pragma once

#include <functional>
#include <optional>
#include <string>

namespace zentrill::test {

/// Why no file system can be mounted here, or nothing.
[[nodiscard]] std::optional<std::string> mountObstacle();

/// From here on this process alone sees the mounts it makes, and they end with it. An ordinary user gets the
/// rights of the superuser over its own files with it. Throws if that fails.
void enterPrivateMountNamespace();

/// Runs `body` in a child that has done so; false if an expectation failed.
[[nodiscard]] bool passesWithPrivateMounts(const std::function<void()>& body);

/// Mounts an empty file system in memory over the folder `at`, with mount options such as "size=16k". Throws
/// if that fails; call it only in a mount namespace of the test's own.
void mountMemoryDisk(const std::string& at, const std::string& options = {});

/// Makes what stands at `source` stand at `target` as well. Throws if that fails; only in a mount namespace
/// as above.
void bindMount(const std::string& source, const std::string& target);

/// Makes the file system mounted at `at` read-only. Throws if that fails.
void remountReadOnly(const std::string& at);

/// Why the root folder cannot be changed here, or nothing.
[[nodiscard]] std::optional<std::string> rootFolderObstacle();

/// Makes `folder` this process's root folder for good. Throws if that fails.
void changeRootFolder(const std::string& folder);

} // namespace zentrill::test
