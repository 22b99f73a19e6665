#pragma once

#include "deletion/CredentialMatcher.h"
#include "deletion/DeletionReport.h"
#include "platform/FileSystem.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace zentrill {

/// How one item is to be deleted.
struct DeletionOptions {
    /// The Safety Shield: recognised credentials are kept.
    bool preserveCredentials = false;
    /// Absolute paths that count as credentials for this call, with everything inside them.
    std::vector<std::string> explicitCredentialPaths;
    /// With the shield on, keep every file that is not a credential too ("uncertain data").
    bool preserveUnrecognized = false;
};

/// The only component that removes files.
///
///     const DeletionReport report = engine.deleteItem(path, {.preserveCredentials = true});
class SafeDeletionEngine {
public:
    /// Whether the item at this path may be removed. An item that it refuses is left without a word.
    using DeletionPredicate = std::function<bool(const std::string& path)>;

    explicit SafeDeletionEngine(const FileSystem& fileManager = FileSystem::shared(),
                                CredentialMatcher matcher = {}, DeletionPredicate mayRemove = {});

    /// Deletes the item at the absolute path `atPath`. A missing item gives an empty report.
    [[nodiscard]] DeletionReport deleteItem(const std::string& atPath, const DeletionOptions& options) const;

    /// Why the item at `path` must not be deleted, or nothing when it may be.
    [[nodiscard]] std::optional<std::string> deletionRefusal(const std::string& path) const;
};

} // namespace zentrill
