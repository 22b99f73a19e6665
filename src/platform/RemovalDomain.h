#pragma once

#include "platform/DirectoryHandle.h"

namespace zentrill {

/// Whether `enterRemovalDomain` can be expected to work. True on Linux with Landlock: 5.13 and later, unless
/// it was left out or switched off.
[[nodiscard]] bool hasRemovalDomains() noexcept;

/// From here on the kernel keeps this thread, and every thread and process that it starts, from removing
/// anything that is not below `folder` at that moment, and from renaming, linking, creating or opening for
/// writing anything at all. `folder` itself cannot be removed either. Reading stays as it is. There is no way
/// back, so it is for a thread that was made for the purpose; nobody else is restricted.
///
/// What is refused fails with EACCES, or with EXDEV for a move to another folder. At most 16 domains can be
/// entered on top of each other. 0, or the system's error number and the thread is as free as before.
[[nodiscard]] int enterRemovalDomain(const DirectoryHandle& folder) noexcept;

} // namespace zentrill
