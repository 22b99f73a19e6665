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

    /// Of the directory when it was opened; not known of the root.
    [[nodiscard]] const FileIdentity& identity() const noexcept { return identity_; }

    void close() noexcept { descriptor_.reset(); }

    /// For calls that this class does not know; closed by this object.
    [[nodiscard]] int descriptor() const noexcept { return descriptor_.get(); }

    /// Opens the folder `name` for looking up names only, which needs no permission to read it. May be a
    /// mount point.
    [[nodiscard]] int openForSearch(const char* name, DirectoryHandle& opened) const;

    /// Opens the folder `name` for listing. ENOTDIR or ELOOP for what is no folder, EXDEV for a mount point
    /// that is refused.
    [[nodiscard]] int openChild(const char* name, Mounts mounts, DirectoryHandle& opened) const;

    /// Opens whatever "..", the folder above, is by now; the caller compares its identity.
    [[nodiscard]] int openParent(DirectoryHandle& opened) const;

    /// Makes `copy` a second handle on the same directory.
    [[nodiscard]] int duplicate(DirectoryHandle& copy) const;

    [[nodiscard]] int lookUp(const char* name, EntryStatus& status) const;

    /// Looks the entry up whose `kind` the listing left unknown; a known one stays as it is, without a look.
    [[nodiscard]] int completeKind(const char* name, EntryKind& kind) const;

    /// Where the link `name` points, as it is written there; nothing if it is no link.
    [[nodiscard]] std::optional<std::string> linkDestination(const char* name) const;

    [[nodiscard]] int removeFile(const char* name) const;

    /// Removes the empty folder `name`.
    [[nodiscard]] int removeDirectory(const char* name) const;

    /// Whether the permissions, and the file system, allow to add and to remove names in the directory.
    [[nodiscard]] bool permitsChanges() const;

    /// Appends entries to `listing`, "." and ".." left out, until its names take up `nameBytesLimit` or the
    /// directory ends, which `atEnd` tells. A following call goes on from there.
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
