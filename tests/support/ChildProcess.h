#pragma once

#include <functional>
#include <string>

namespace zentrill::test {

/// Runs `body` in a child process, where it may give up rights that the test program still needs. True when
/// the child ended by itself and none of its expectations failed; they are printed as usual.
///
///     EXPECT_TRUE(passesInChild([&] {
///         becomeOrdinaryUser();
///         EXPECT_FALSE(files.isWritable(folder));
///     }));
[[nodiscard]] bool passesInChild(const std::function<void()>& body);

/// Drops every right of the superuser for good; no change for any other user. Throws if that fails.
void becomeOrdinaryUser();

/// The user that `becomeOrdinaryUser` turns into when root calls it.
inline constexpr unsigned ordinaryUserId = 65534;

/// Whether the three functions below work: on Linux, as root.
[[nodiscard]] bool canMount();

/// From here on this process alone sees the mounts it makes, and they end with it. Throws if that fails.
void enterPrivateMountNamespace();

/// Mounts an empty file system in memory over the folder `at`, with mount options such as "size=16k". Throws
/// if that fails; call it only in a mount namespace of the test's own.
void mountMemoryDisk(const std::string& at, const std::string& options = {});

/// Makes the file system mounted at `at` read-only. Throws if that fails.
void remountReadOnly(const std::string& at);

} // namespace zentrill::test
