#pragma once

#include "platform/DirectoryHandle.h"

#include <cstdint>
#include <optional>

namespace zentrill {

/// The bytes that an ordinary user can still write on the file system of the open `folder`; nothing where it
/// cannot be told, as on file systems without a size. A file system may give removed blocks back only some
/// time after their files are gone.
[[nodiscard]] std::optional<std::int64_t> freeSpace(const DirectoryHandle& folder);

} // namespace zentrill
