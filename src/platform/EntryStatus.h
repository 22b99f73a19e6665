#pragma once

#include <cstdint>

#include <sys/types.h>

namespace zentrill {

/// What a directory says about an entry without looking the entry itself up.
enum class EntryKind : std::uint8_t {
    /// The file system does not tell.
    unknown,
    directory,
    /// A symbolic link.
    link,
    /// Anything else: a file, a pipe, a device.
    other,
};

/// Which file a name led to, whatever it is called now.
struct FileIdentity {
    dev_t device = 0;
    ino_t inode = 0;

    bool operator==(const FileIdentity&) const = default;
};

/// What is known of an entry that was looked up. A link is described itself, not its target.
struct EntryStatus {
    /// Never `unknown`.
    EntryKind kind = EntryKind::other;
    FileIdentity identity;
    /// Logical size in bytes.
    std::int64_t size = 0;
    /// What it occupies on the disk, in bytes.
    std::int64_t allocatedSize = 0;
    /// How many names lead to it.
    std::uint64_t linkCount = 0;
};

} // namespace zentrill
