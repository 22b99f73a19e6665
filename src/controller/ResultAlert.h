#pragma once

#include "controller/ResultOutcome.h"

#include <cstdint>
#include <string>

namespace zentrill {

/// What the result window shows of a finished operation.
struct ResultAlert {
    std::string title;
    /// Lines separated by line feeds. Paths in it are bytes, not necessarily UTF-8.
    std::string message;
    ResultOutcome outcome = ResultOutcome::unknown;
    /// Number of paths deliberately left in place.
    std::int64_t retainedPathCount = 0;

    bool operator==(const ResultAlert&) const = default;
};

} // namespace zentrill
