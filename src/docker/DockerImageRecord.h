#pragma once

#include <string>
#include <vector>

namespace zentrill {

/// One image as the tool listed it, before anything is known about its use.
struct DockerImageRecord {
    /// "sha256:" followed by 64 hexadecimal digits.
    std::string imageID;
    /// "repository:tag" pairs, sorted, each once, without "<none>" entries.
    std::vector<std::string> tags;
    /// Docker's own text, such as "1.24GB".
    std::string size;

    bool operator==(const DockerImageRecord&) const = default;
};

} // namespace zentrill
