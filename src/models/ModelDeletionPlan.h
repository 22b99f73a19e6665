#pragma once

#include "deletion/DeletionPlan.h"

#include <cstdint>
#include <string>
#include <vector>

namespace zentrill {

/// What the deletion of one model would do, found out without changing anything.
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

    /// What goes. For an Ollama model, which Ollama's tool removes, that is the manifest, then the blobs that
    /// no other model needs, in the manifest's order. Whether the tool fails cannot be foreseen; the failures
    /// are those of the cleanup after it.
    DeletionPlan files;
    /// In the manifest's order.
    std::vector<SharedBlob> sharedBlobs;
    /// The logical size, in bytes, of the files outside the model's folder that links in it lead to, each
    /// counted once. They stay and free no space.
    std::int64_t bytesElsewhere = 0;

    bool operator==(const ModelDeletionPlan&) const = default;
};

} // namespace zentrill
