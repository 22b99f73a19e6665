#pragma once

#include "deletion/DeletionReport.h"

#include <string>

namespace zentrill {

/// What came of deleting one local model.
struct ModelDeletionResult {
    /// True only when the model is gone and nothing failed.
    bool succeeded = false;
    // Without braces GCC warns of missing initializers where a result names only some fields.
    /// One sentence for the user and the activity log.
    std::string message{}; // NOLINT(readability-redundant-member-init)
    /// What the deletion engine did; empty when it was not called.
    DeletionReport deletionReport{};

    bool operator==(const ModelDeletionResult&) const = default;
};

} // namespace zentrill
