#pragma once

#include "platform/DirectoryHandle.h"

#include <cstdint>
#include <optional>

namespace zentrill {

/// The bytes that an ordinary user can still write on the file system of the open `folder`; nothing if that
/// is not known, as on file systems without a size. A file system may free the blocks of removed files only
/// after some time.
[[nodiscard]] std::optional<std::int64_t> freeSpace(const DirectoryHandle& folder);

} // namespace zentrill
