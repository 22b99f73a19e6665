#pragma once

#include "deletion/DeletionReport.h"

#include <cstddef>
#include <optional>
#include <string>

namespace zentrill {

/// What happened during a deletion, or during a part of it.
struct DeletionRecord {
    struct Failure {
        std::string path;
        std::string description;
    };

    /// With a shield, every removal, kept item and failure; otherwise empty.
    DeletionReport report;
    std::size_t removedCount = 0;
    std::optional<Failure> firstFailure;
    /// Folders that another thread has done.
    std::size_t foldersOfOthers = 0;

    /// Adds what happened later.
    void append(DeletionRecord later);
};

} // namespace zentrill
