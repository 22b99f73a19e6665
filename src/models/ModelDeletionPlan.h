#pragma once

#include "deletion/DeletionPlan.h"

#include <cstdint>
#include <string>
#include <vector>

namespace zentrill {

/// What the deletion of one model would do, found out by looking alone.
struct ModelDeletionPlan {
    /// A part of the model that stays because other models need it.
    struct SharedBlob {
        std::string path;
        /// Logical size in bytes.
        std::int64_t logicalBytes = 0;
        /// The names of those models, each once.
        std::vector<std::string> models{}; // NOLINT(readability-redundant-member-init): GCC warns

        bool operator==(const SharedBlob&) const = default;
    };

    /// What goes. Ollama's own tool removes an Ollama model: its manifest, then the blobs that no other model
    /// needs, in the manifest's order. Whether that fails nobody can tell beforehand; the failures are those
    /// of the cleanup that follows it.
    DeletionPlan files;
    /// In the manifest's order.
    std::vector<SharedBlob> sharedBlobs;
    /// The logical size, in bytes, of the files outside of the model's folder to which links in it lead, each
    /// counted once. They stay, and nothing of them comes free.
    std::int64_t bytesElsewhere = 0;

    bool operator==(const ModelDeletionPlan&) const = default;
};

} // namespace zentrill
