#pragma once

#include "deletion/DeletionPlan.h"
#include "deletion/DeletionRules.h"
#include "deletion/EarlierPlans.h"
#include "deletion/ItemPaths.h"
#include "deletion/LinkedFiles.h"
#include "platform/DirectoryHandle.h"
#include "platform/DirectoryStack.h"
#include "platform/RemovalForecast.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zentrill {

/// Goes through an item in the order in which `DeletionWalk` does, applies the same rules, and removes
/// nothing. One thread; its memory grows with the tree's depth and the files of several names, not with the
/// number of entries.
class PlanWalk {
public:
    /// As for `DeletionWalk`. `rules` and `options` outlive the walk.
    PlanWalk(const DeletionRules& rules, const PlanOptions& options, std::string path,
             std::string standardizedPath, DirectoryHandle parent);

    /// Makes the plan; once for each object.
    [[nodiscard]] DeletionPlan run();

private:
    enum class End : std::uint8_t {
        removed,
        recognizedCredential,
        listedCredential,
        uncertainData,
        refused,
        failing
    };

    /// What the plan knows of a directory of the stack.
    struct Folder {
        /// Something inside stays, so the directory does too.
        bool left = false;
        /// Why no entry in here can be looked up; 0 if they can.
        int lookUpError = 0;
        /// Of the files in it that were counted, at any depth of folders that go.
        std::int64_t logicalBytes = 0;
        RemovalForecast forecast;
        // The braces keep GCC's missing-field-initializers quiet.
        std::vector<std::string_view> explicitNames{};  // NOLINT(readability-redundant-member-init)
        std::vector<EarlierPlans::Item> earlierItems{}; // NOLINT(readability-redundant-member-init)
    };

    void walk();
    void handle(const char* name, EntryKind kind);
    void plan(const char* name, EntryKind kind);
    void planLeaf(const char* name);
    void enter(const char* name);
    [[nodiscard]] int errorOfUnread(const char* name, int openingError) const;
    void begin();
    void leave();
    void keep(const char* name, CredentialReason reason);

    /// Of the top directory.
    [[nodiscard]] Folder& folder() { return folders_.back(); }

    [[nodiscard]] bool mayRemove(const char* name) const;
    [[nodiscard]] std::string_view below() const;
    [[nodiscard]] std::string pathOf(const char* name) const;

    [[nodiscard]] DeletionPlan::Items& items(End end);
    /// Counts the entry `name` of the top directory; a folder's size is that of what goes with it.
    void count(const char* name, End end, const EntryStatus& status);
    /// What could not be looked up has the empty status.
    void fail(const char* name, int error, const EntryStatus& status = {});
    void failHere(int error);
    void recordFailure(const std::string& path, int error);

    const DeletionRules& rules_;
    const PlanOptions& options_;
    ItemPaths paths_;
    std::string itemName_;
    /// From the item's parent down.
    DirectoryStack stack_;
    /// One for each directory of the stack.
    std::vector<Folder> folders_;
    LinkedFiles ownLinkedFiles_;
    LinkedFiles& linkedFiles_;
    DeletionPlan plan_;
};

} // namespace zentrill
