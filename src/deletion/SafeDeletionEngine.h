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
/// 1. It refuses a path that is not absolute, the root, the home folder and the folders around it, and a path
///    that leads through a symbolic link other than the system's own aliases (/tmp, /var, /etc).
/// 2. It opens the folder that holds the item, one component of the path at a time and none of them through a
///    link. From here on no path is looked up again: each entry is named relative to an open folder, so that
///    it does not matter if somebody renames or replaces a folder meanwhile.
/// 3. It walks through the item, the contents of a folder before the folder. A link is removed or kept as a
///    link and never followed, a mount point is never entered, and what another program removes meanwhile
///    counts as if it had not been there.
/// 4. With the shield, each entry is checked before it goes. What is kept keeps the folders above it.
/// 5. The item's own entry goes last, from the thread that called.
///
/// A large tree is walked by several threads; the report is the same for any number of them. On Linux they
/// run in a Landlock domain (`DeletionDomain`), in which the kernel refuses every removal outside the item,
/// whatever the walk asks for. Without Landlock only the walk's own care protects what is outside.
///
/// Nothing is thrown: what cannot go is a failure in the report and does not stop the rest.
///
/// Thread safety: the engine has no mutable state and may be used on any thread, if `mayRemove` may be, too.
/// It is asked on the thread that called `deleteItem`, which blocks until the end.
///
/// Pitfalls:
///
/// - An empty report is a success: there was nothing at the path, or nothing that may be looked up, or
///   `mayRemove` kept it all.
/// - Without the shield, `removed` is `atPath` or empty: parts that went before a failure are not listed.
/// - A file that somebody puts into the tree while it is deleted may go with it, or keep its folder.
/// - A folder that somebody moves out of the item stays as it is where the kernel holds the deletion, and
///   goes on being emptied elsewhere.
class SafeDeletionEngine {
public:
    /// Whether the item at this path, in the form that reports use, may be removed. An item that it refuses
    /// stays without being reported, and so do its contents and the folders above it.
    using DeletionPredicate = std::function<bool(const std::string& path)>;

    explicit SafeDeletionEngine(const FileSystem& fileManager = FileSystem::shared(),
                                CredentialMatcher matcher = {}, DeletionPredicate mayRemove = {},
                                DeletionConcurrency concurrency = DeletionConcurrency::ofThisMachine(),
                                DeletionDomain domain = DeletionDomain::ofThisMachine());

    /// The same engine, whose deletions keep `progress` up to date.
    [[nodiscard]] SafeDeletionEngine tellingTo(std::shared_ptr<DeletionProgress> progress) const;

    /// Deletes the item at the absolute path `atPath`. A missing item gives an empty report, and so does one
    /// in a folder where nothing may be looked up.
    ///
    /// With the shield the report lists each item, the contents of a folder before the folder. Without it,
    /// the report has `atPath` alone as removed, or one failure that names the first item that could not go.
    /// Either way a failure keeps only the folders above it, and everything else goes. With the shield a
    /// folder that cannot be read is a failure, because nobody can tell what it holds.
    [[nodiscard]] DeletionReport deleteItem(const std::string& atPath, const DeletionOptions& options) const;

    /// What `deleteItem` would do with the same options, found out without changing anything. If nobody
    /// changes the tree in between, its report says the same. Lists every item, with the shield or without.
    [[nodiscard]] DeletionPlan plan(const std::string& atPath, const DeletionOptions& options,
                                    const PlanOptions& planOptions = {}) const;

    /// Why the item at `path` must not be deleted, or nothing when it may be.
    [[nodiscard]] std::optional<std::string> deletionRefusal(const std::string& path) const;

private:
    /// Opens the folder of the item; returns a report if the deletion ends here.
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
