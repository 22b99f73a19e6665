#pragma once

#include "platform/DirectoryListing.h"
#include "platform/FileDescriptor.h"

#include <cstddef>
#include <optional>
#include <string>

#include <sys/types.h>

namespace zentrill {

/// Which file a name led to, whatever it is called now.
struct FileIdentity {
    dev_t device = 0;
    ino_t inode = 0;

    bool operator==(const FileIdentity&) const = default;
};

/// An open directory, and what can be done with the names directly inside it. No call here follows a
/// symbolic link, and a path swapped somewhere above no longer matters once the directory is open.
///
/// Calls that can fail return the system's error number, 0 for success.
class DirectoryHandle {
public:
    DirectoryHandle() noexcept = default;

    /// Opens "/" for looking up names.
    [[nodiscard]] static int openRoot(DirectoryHandle& opened);

    [[nodiscard]] explicit operator bool() const noexcept { return static_cast<bool>(descriptor_); }

    /// Of the directory when it was opened by `openChild` or `openParent`.
    [[nodiscard]] const FileIdentity& identity() const noexcept { return identity_; }

    void close() noexcept { descriptor_.reset(); }

    /// Opens the folder `name` for looking up names only, which needs no permission to read it. May be a
    /// mount point.
    [[nodiscard]] int openForSearch(const char* name, DirectoryHandle& opened) const;

    /// Opens the folder `name` for listing. EXDEV for a mount point, ENOTDIR or ELOOP for what is no folder.
    [[nodiscard]] int openChild(const char* name, DirectoryHandle& opened) const;

    /// Opens whatever "..", the folder above, is by now; the caller compares its identity.
    [[nodiscard]] int openParent(DirectoryHandle& opened) const;

    /// Makes `copy` a second handle on the same directory.
    [[nodiscard]] int duplicate(DirectoryHandle& copy) const;

    [[nodiscard]] int lookUp(const char* name, EntryKind& kind, FileIdentity& identity) const;

    /// Where the link `name` points, as it is written there; nothing if it is no link.
    [[nodiscard]] std::optional<std::string> linkDestination(const char* name) const;

    [[nodiscard]] int removeFile(const char* name) const;

    /// Removes the empty folder `name`.
    [[nodiscard]] int removeDirectory(const char* name) const;

    /// Appends entries to `listing`, "." and ".." left out, until its names take up `nameBytesLimit` or the
    /// directory ends, which `atEnd` tells. A following call goes on from there.
    [[nodiscard]] int readEntries(DirectoryListing& listing, std::size_t nameBytesLimit, bool& atEnd) const;

    /// Makes the next `readEntries` start over.
    [[nodiscard]] int rewind() const;

private:
    [[nodiscard]] int rememberIdentity();

    FileDescriptor descriptor_;
    FileIdentity identity_;
};

} // namespace zentrill
