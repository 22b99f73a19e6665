#pragma once

#include <cstdint>
#include <map>
#include <string>

#include <sys/types.h>

namespace zentrill::test {

/// One item as the disk shows it.
struct DiskItem {
    mode_t mode = 0;
    ino_t inode = 0;
    /// A file's bytes or a link's target.
    std::string content;
    std::int64_t modified = 0;

    bool operator==(const DiskItem&) const = default;

    [[nodiscard]] bool isDirectory() const;
};

/// Everything at and below a path, by path. Reads the disk with calls that the code under test does not use.
using DiskSnapshot = std::map<std::string, DiskItem>;

/// Folders' times are left out, since removing an entry changes them. All folders must be readable.
[[nodiscard]] DiskSnapshot takeSnapshot(const std::string& path);

} // namespace zentrill::test
