#pragma once

#include <string>
#include <vector>

namespace zentrill::confinement {

/// The folders that a confined process may write to, and the file by which it knows that it is confined.
///
///     <temporary folder>/zentrill-XXXXXX/canary
///     <temporary folder>/zentrill-XXXXXX/scratch
///     /dev/shm/zentrill-XXXXXX                      where the system has one
struct Scratch {
    /// Holds the two others; nothing else is ever in it.
    std::string base;
    /// Absolute and free of links.
    std::string folder;
    /// A file that no confined process can change.
    std::string canary;
    /// A folder in memory, or the same as `folder`.
    std::string memory;

    /// In $TMPDIR, or where that cannot be written to in /tmp or /var/tmp. Throws `std::system_error`.
    [[nodiscard]] static Scratch make();

    /// The scratch whose folders have these paths.
    [[nodiscard]] static Scratch at(const std::string& folder, const std::string& memory);

    [[nodiscard]] std::vector<std::string> folders() const;

    /// Removes the folders, unless something is in them, and the canary: each by its exact name.
    void removeEmpty() const;
};

} // namespace zentrill::confinement
