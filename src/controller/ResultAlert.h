#pragma once

#include "controller/ResultOutcome.h"

#include <cstdint>
#include <string>
#include <vector>

namespace zentrill {

/// What the result window shows of a finished operation.
struct ResultAlert {
    std::string title;
    /// Lines separated by line feeds. Paths in it are bytes, not necessarily UTF-8.
    std::string message;
    ResultOutcome outcome = ResultOutcome::unknown;
    /// Number of paths deliberately left in place.
    std::int64_t retainedPathCount = 0;
    /// Those of them that `message` lists below its heading, each on a separate line after a name and ": ".
    std::vector<std::string> retainedPaths;
    /// The free space before and after, in one line; empty if it was not measured or nothing was removed.
    std::string freeSpace{}; // NOLINT(readability-redundant-member-init): GCC warns

    bool operator==(const ResultAlert&) const = default;
};

} // namespace zentrill
