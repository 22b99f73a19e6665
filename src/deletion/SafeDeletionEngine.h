#pragma once

#include "deletion/CredentialMatcher.h"
#include "deletion/DeletionConcurrency.h"
#include "deletion/DeletionDomain.h"
#include "deletion/DeletionPlan.h"
#include "deletion/DeletionProgress.h"
#include "deletion/DeletionReport.h"
#include "deletion/ParentFolder.h"
#include "platform/DirectoryHandle.h"
#include "platform/FileSystem.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zentrill {

/// How one item is to be deleted.
struct DeletionOptions {
    /// The Safety Shield: recognised credentials are kept.
    bool preserveCredentials = false;
    /// Absolute paths that count as credentials for this call, with everything inside them.
    std::vector<std::string>
        explicitCredentialPaths{}; // NOLINT(readability-redundant-member-init): GCC warns
    /// With the shield on, keep every file that is not a credential too ("uncertain data").
    bool preserveUnrecognized = false;
};

/// The only component that removes people's files.
///
///     const DeletionReport report = engine.deleteItem(path, {.preserveCredentials = true});
///
/// What `deleteItem` does, in this order:
///
/// 1. It refuses the root, the home folder and the folders around it, and a path that leads through a
///    symbolic link, but for the system's own aliases (/tmp, /var, /etc).
/// 2. It opens the item's folder, one component of the path after the other, none of them through a link.
///    From here on no path is looked up again: each entry is named relative to an open folder, so that a
///    folder which somebody renames or replaces meanwhile leads nowhere else.
/// 3. It walks through the item, contents before their folder. A link is removed or kept as a link, a mount
///    point is never entered, and what another program removes meanwhile was not there.
/// 4. With the shield, each entry is looked at before it goes; what is kept keeps the folders above it.
/// 5. The item's own entry goes last.
///
/// A large tree is walked by several threads; the report is the same for any number of them. On Linux these
/// threads run in a Landlock domain (`DeletionDomain`) in which the kernel itself removes nothing outside of
/// the item, whatever the walk asks for. Elsewhere the walk's own care is all that holds it.
///
/// Nothing is thrown: what cannot go is a failure in the report, and nothing else stays because of it.
///
/// Not covered: a file that somebody puts into the tree while it goes may go with it, or keep its folder.
///
/// It holds no mutable state: safe from any thread as long as `mayRemove` is, which is asked on the thread
/// that calls `deleteItem`.
class SafeDeletionEngine {
public:
    /// Whether the item at this path, in the form that reports use, may be removed. An item that it refuses
    /// is left without a word, and so are what it holds and the folders above it.
    using DeletionPredicate = std::function<bool(const std::string& path)>;

    explicit SafeDeletionEngine(const FileSystem& fileManager = FileSystem::shared(),
                                CredentialMatcher matcher = {}, DeletionPredicate mayRemove = {},
                                DeletionConcurrency concurrency = DeletionConcurrency::ofThisMachine(),
                                DeletionDomain domain = DeletionDomain::ofThisMachine());

    /// The same engine, whose deletions tell `progress` how far they have come.
    [[nodiscard]] SafeDeletionEngine tellingTo(std::shared_ptr<DeletionProgress> progress) const;

    /// Deletes the item at the absolute path `atPath`. A missing item gives an empty report, and so does one
    /// in a folder where nothing may be looked up.
    ///
    /// With the shield the report lists each item, contents before their folder; without it, `atPath` alone
    /// as removed, or as one failure that names the first item that could not go. Either way everything that
    /// can go does: a failure stops nothing but the removal of the folders above it. What cannot be read is a
    /// failure with the shield, since nobody can tell what it holds.
    [[nodiscard]] DeletionReport deleteItem(const std::string& atPath, const DeletionOptions& options) const;

    /// What `deleteItem` would do with the same options, found out by looking alone: on a tree that nobody
    /// changes, its report says the same. Lists every item, with the shield or without.
    [[nodiscard]] DeletionPlan plan(const std::string& atPath, const DeletionOptions& options,
                                    const PlanOptions& planOptions = {}) const;

    /// Why the item at `path` must not be deleted, or nothing when it may be.
    [[nodiscard]] std::optional<std::string> deletionRefusal(const std::string& path) const;

private:
    /// Opens the folder of the item; what the report says instead, if the deletion ends here.
    [[nodiscard]] std::optional<DeletionReport> openParent(const std::string& atPath,
                                                           ParentFolder& parent) const;
    [[nodiscard]] std::optional<std::string> unsafeSymlinkAncestor(const std::string& path) const;
    [[nodiscard]] DeletionReport deleteWhole(const std::string& atPath, const std::string& standardized,
                                             DirectoryHandle parent) const;
    [[nodiscard]] DeletionReport deletePreservingCredentials(const std::string& atPath,
                                                             const std::string& standardized,
                                                             DirectoryHandle parent,
                                                             const DeletionOptions& options) const;

    const FileSystem* fileManager_;
    CredentialMatcher matcher_;
    DeletionPredicate mayRemove_;
    DeletionConcurrency concurrency_;
    DeletionDomain domain_;
    std::shared_ptr<DeletionProgress> progress_;
};

} // namespace zentrill
