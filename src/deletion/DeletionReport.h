#pragma once

#include <string>
#include <vector>

namespace zentrill {

/// What a destructive file operation did. It always matches the disk: every path in `removed` is gone, every
/// path in `preserved` is there. The order is that of a single thread, however many there were.
struct DeletionReport {
    /// Deleted paths, the contents of a folder before the folder.
    std::vector<std::string> removed;
    /// Paths that the Safety Shield kept on purpose.
    std::vector<std::string> preserved;
    /// One message per failed or refused step: the path, ": " and the system's description.
    std::vector<std::string> failures;

    [[nodiscard]] bool succeeded() const noexcept { return failures.empty(); }

    [[nodiscard]] bool changedAnything() const noexcept { return !removed.empty(); }

    /// Appends the other report's lists to this one's, list by list, in order.
    void merge(DeletionReport other);

    bool operator==(const DeletionReport&) const = default;
};

} // namespace zentrill
