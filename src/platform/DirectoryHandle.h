#pragma once

#include "platform/DirectoryListing.h"
#include "platform/EntryStatus.h"
#include "platform/FileDescriptor.h"
#include "platform/FinalLink.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace zentrill {

/// Whether a mount point is opened as what is mounted there, or refused.
enum class Mounts : std::uint8_t { refuse, enter };

/// An open directory, and what can be done with the names directly inside it. No call on it follows a
/// symbolic link, and a path swapped somewhere above no longer matters once the directory is open.
///
/// Calls that can fail return the system's error number, 0 for success.
class DirectoryHandle {
public:
    DirectoryHandle() noexcept = default;

    /// Opens "/" for looking up names.
    [[nodiscard]] static int openRoot(DirectoryHandle& opened);

    /// Opens the folder at `path` for listing, wherever it is. Links above it are followed.
    [[nodiscard]] static int open(const std::string& path, FinalLink link, DirectoryHandle& opened);

    [[nodiscard]] explicit operator bool() const noexcept { return static_cast<bool>(descriptor_); }

    /// The identity of the directory when it was opened; not known for the root.
    [[nodiscard]] const FileIdentity& identity() const noexcept { return identity_; }

    void close() noexcept { descriptor_.reset(); }

    /// For calls that this class does not offer. This object closes it.
    [[nodiscard]] int descriptor() const noexcept { return descriptor_.get(); }

    /// Opens the folder `name` for looking up names only, which needs no permission to read it. May be a
    /// mount point.
    [[nodiscard]] int openForSearch(const char* name, DirectoryHandle& opened) const;

    /// Opens the folder `name` for listing. ENOTDIR or ELOOP if it is not a folder, EXDEV for a mount point
    /// that is refused.
    [[nodiscard]] int openChild(const char* name, Mounts mounts, DirectoryHandle& opened) const;

    /// Opens "..", whichever folder that is by now; the caller has to compare its identity.
    [[nodiscard]] int openParent(DirectoryHandle& opened) const;

    /// Makes `copy` a second handle on the same directory.
    [[nodiscard]] int duplicate(DirectoryHandle& copy) const;

    [[nodiscard]] int lookUp(const char* name, EntryStatus& status) const;

    /// Looks up the entry if the listing left its `kind` unknown; a known kind stays as it is.
    [[nodiscard]] int completeKind(const char* name, EntryKind& kind) const;

    /// Where the link `name` points, as it is written in the link; nothing if it is not a link.
    [[nodiscard]] std::optional<std::string> linkDestination(const char* name) const;

    [[nodiscard]] int removeFile(const char* name) const;

    /// Removes the empty folder `name`.
    [[nodiscard]] int removeDirectory(const char* name) const;

    /// Whether the permissions and the file system allow adding and removing names in the directory.
    [[nodiscard]] bool permitsChanges() const;

    /// Appends entries to `listing`, without "." and "..", until its names take up `nameBytesLimit` bytes or
    /// the directory ends, in which case `atEnd` becomes true. The next call goes on from there.
    [[nodiscard]] int readEntries(DirectoryListing& listing, std::size_t nameBytesLimit, bool& atEnd) const;

    /// Makes the next `readEntries` start over.
    [[nodiscard]] int rewind() const;

private:
    /// Opens the folder `name`, seen from `directory`.
    [[nodiscard]] static int openAt(int directory, const char* name, int flags, DirectoryHandle& opened);
    [[nodiscard]] int openWithinMount(const char* name, DirectoryHandle& opened) const;
    [[nodiscard]] int rememberIdentity();

    FileDescriptor descriptor_;
    FileIdentity identity_;
};

} // namespace zentrill
