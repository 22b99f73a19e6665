#pragma once

#include "platform/DirectoryHandle.h"

#include <optional>
#include <string>

namespace zentrill {

/// The open folder that an item lies in, reached from the root without following any link but the system's
/// aliases. Swapping a folder of the path afterwards has no effect: the removal starts from `handle`.
struct ParentFolder {
    /// The system's error number, 0 when `handle` is open; ENOENT or ENOTDIR when no item can be there.
    int error = 0;
    DirectoryHandle handle;
    /// The link that stood in the way; `error` is ELOOP then.
    std::optional<std::string> unsafeAncestor;
    /// The item's own name.
    std::string name;

    /// For the item at `path`: absolute, standardized and not the root.
    [[nodiscard]] static ParentFolder open(const std::string& path);
};

} // namespace zentrill
