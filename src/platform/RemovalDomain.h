#pragma once

#include "platform/DirectoryHandle.h"

namespace zentrill {

/// Whether `enterRemovalDomain` should work: on Linux 5.13 or later, if Landlock is built in and switched on.
[[nodiscard]] bool hasRemovalDomains() noexcept;

/// From here on the kernel keeps this thread, and every thread and process that it starts, from removing
/// anything that is not below `folder` at that moment, and from renaming, linking, creating or opening for
/// writing anything at all. `folder` itself cannot be removed either. Reading stays as it is. This cannot be
/// undone, so it is for a thread that was started for the purpose; other threads are not restricted.
///
/// Refused calls fail with EACCES, or with EXDEV for a move to another folder. A thread can be in at most 16
/// domains. Returns 0, or the system's error number if nothing was restricted.
[[nodiscard]] int enterRemovalDomain(const DirectoryHandle& folder) noexcept;

} // namespace zentrill
