#pragma once

#include <string>

namespace zentrill {

/// What came of the removal of one image.
struct DockerImageRemovalResult {
    /// True only when the tool removed the image.
    bool succeeded = false;
    /// The sentence for the result and the activity log.
    std::string message;

    bool operator==(const DockerImageRemovalResult&) const = default;
};

} // namespace zentrill
