#pragma once

#include "platform/DirectoryHandle.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace zentrill {

/// The free space of the file systems that an operation removes from, measured before and after it.
///
///     FreeSpaceMeter meter;
///     meter.watchItem(path);          // right before
///     remove(path);
///     alert.freeSpace = meter.text(); // right after
///
/// Several file systems share one line, which adds up those whose free space has changed. Two with exactly
/// the same free space are taken for volumes of one pool and count once.
class FreeSpaceMeter {
public:
    /// As `freeSpace` does.
    using Measure = std::function<std::optional<std::int64_t>(const DirectoryHandle& folder)>;

    explicit FreeSpaceMeter(Measure measure = &FreeSpaceMeter::measured);

    /// Measures the file system that holds the item at `path`, if there is one.
    void watchItem(const std::string& path);

    /// Measures the file system of the folder at `path`, if there is one.
    void watchFolder(const std::string& path);

    /// "Free space: 41.2 GB → 46.8 GB", before and now; empty if nothing was measured.
    [[nodiscard]] std::string text() const;

private:
    struct Volume {
        /// Kept open, so that it can be measured again whatever happens to its path.
        DirectoryHandle folder;
        std::int64_t before = 0;
    };

    [[nodiscard]] static std::optional<std::int64_t> measured(const DirectoryHandle& folder);

    Measure measure_;
    std::vector<Volume> volumes_;
};

} // namespace zentrill
