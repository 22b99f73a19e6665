#pragma once

#include "platform/FinalLink.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace zentrill {

/// What came of reading a file.
struct FileReading {
    /// The whole content, or nothing when it could not be had.
    std::optional<std::string> content;
    /// Nothing stands at the path. False for whatever is there but was not read.
    bool missing = false;
};

/// Reads a regular file of at most `limit` bytes. Anything else at the path (a folder, a pipe, a device, a
/// longer file) is not read; no kind of item makes the call block.
[[nodiscard]] FileReading readRegularFile(const std::string& path, std::size_t limit, FinalLink finalLink);

/// Replaces the file at the absolute `path` in one step, readable and writable by its owner alone: a reader
/// sees the old content or the new one, never a part. Missing parent folders are made, for their owner
/// alone too. False when it could not be done; the old file is then whole. Where a link or anything but a
/// regular file stands at `path`, nothing is written, neither over it nor through it.
[[nodiscard]] bool replaceRegularFile(const std::string& path, std::string_view content);

} // namespace zentrill
