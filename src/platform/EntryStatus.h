#pragma once

#include <cstdint>

#include <sys/types.h>

namespace zentrill {

/// What a directory tells of an entry without looking it up.
enum class EntryKind : std::uint8_t {
    /// The file system does not say.
    unknown,
    directory,
    /// A symbolic link.
    link,
    /// Anything else: a file, a pipe, a device.
    other,
};

/// Identifies a file, whatever it is called now.
struct FileIdentity {
    dev_t device = 0;
    ino_t inode = 0;

    bool operator==(const FileIdentity&) const = default;
};

/// What is known of an entry that was looked up. For a link, that is about the link and not its target.
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
