#pragma once

#include "platform/FinalLink.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace zentrill {

/// What came of reading a file.
struct FileReading {
    /// The whole content, or nothing if it could not be read.
    std::optional<std::string> content;
    /// There is nothing at the path. False if there is an item that was not read.
    bool missing = false;
};

/// Reads a regular file of at most `limit` bytes. Anything else at the path (a folder, a pipe, a device, a
/// longer file) is not read; no kind of item makes the call block.
[[nodiscard]] FileReading readRegularFile(const std::string& path, std::size_t limit, FinalLink finalLink);

/// Replaces the file at the absolute `path` in one step, readable and writable by its owner alone: a reader
/// sees the old content or the new one, never a part. Missing parent folders are made, also for their owner
/// alone. False if it failed; the old file is then intact. If the item at `path` is a link or anything else
/// but a regular file, nothing is written over it or through it.
[[nodiscard]] bool replaceRegularFile(const std::string& path, std::string_view content);

} // namespace zentrill
