#pragma once

#include "deletion/DeletionCrew.h"
#include "deletion/DeletionPlan.h"
#include "deletion/DeletionRules.h"
#include "deletion/DeletionSubtree.h"
#include "deletion/EarlierPlans.h"
#include "deletion/HandedOverFolders.h"
#include "deletion/ItemPaths.h"
#include "deletion/LinkedFiles.h"
#include "deletion/OrderedRecord.h"
#include "deletion/PlanRecord.h"
#include "deletion/PlanTeller.h"
#include "platform/DirectoryHandle.h"
#include "platform/DirectoryStack.h"
#include "platform/RemovalForecast.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zentrill {

/// Goes through an item in the order in which `DeletionWalk` does, applies the same rules, and removes
/// nothing. In a large tree folders are left to other threads in the same way, each with its place in the
/// plan. Memory grows with the tree's depth and the files of several names, not with the number of entries.
class PlanWalk {
public:
    /// As for `DeletionWalk`. `rules` and `options` outlive the walk.
    PlanWalk(const DeletionRules& rules, const PlanOptions& options, std::string path,
             std::string standardizedPath, DirectoryHandle parent);

    /// Makes the plan; once for each object.
    [[nodiscard]] PlanRecord run();

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
        /// Of the files in it, at any depth of folders that go, with each of their names.
        std::int64_t logicalBytes = 0;
        RemovalForecast forecast;
        // The braces keep GCC's missing-field-initializers quiet.
        std::vector<std::string_view> explicitNames{};  // NOLINT(readability-redundant-member-init)
        std::vector<EarlierPlans::Item> earlierItems{}; // NOLINT(readability-redundant-member-init)
    };

    /// What the threads of one plan have in common.
    struct Shared {
        Shared(std::string reportedItem, const PlanOptions& options)
            : item(std::move(reportedItem)),
              teller(item, options),
              linkedFiles(options.earlier != nullptr ? options.earlier->linkedFiles() : ownLinkedFiles) {}

        /// As the report calls it.
        std::string item;
        PlanTeller teller;
        std::atomic<bool> stopped{false};
        LinkedFiles ownLinkedFiles;
        LinkedFiles& linkedFiles;
        std::mutex linkedFilesMutex;
    };

    /// For a folder that `around`, a walk of the same plan, left to this thread; `mayHelp` is as for
    /// `DeletionCrew::await`.
    PlanWalk(const PlanWalk& around, SubtreeTask task, DeletionCrew& crew, bool mayHelp);

    [[nodiscard]] PlanRecord emptyRecord() const;
    [[nodiscard]] HandedOverFolders<PlanOutcome>::Walk lend();
    [[nodiscard]] PlanOutcome goThrough();
    [[nodiscard]] bool stopRequested();
    /// Hands over what was found since the last time.
    void tellNews();
    [[nodiscard]] bool handOver(const char* name);
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

    [[nodiscard]] static DeletionPlan::Items& items(DeletionPlan& plan, End end);
    /// Adds the entry `name` of the top directory to what meets `end`, and to the list if there is room; null
    /// for the directory itself.
    void list(const char* name, End end, const EntryStatus& status);
    /// Counts the entry `name` of the top directory; a folder's size is that of what goes with it.
    void count(const char* name, End end, const EntryStatus& status);
    /// Notes one more name of a file, and what it meets.
    [[nodiscard]] LinkedFiles::Count meet(const EntryStatus& file, End end);
    /// What could not be looked up has the empty status.
    void fail(const char* name, int error, const EntryStatus& status = {});
    void failHere(int error);
    /// Whether the plan has room for one more.
    [[nodiscard]] bool listsFailures();
    void listFailure(const std::string& path, int error);

    const DeletionRules& rules_;
    const PlanOptions& options_;
    /// In the walk that began it all.
    std::unique_ptr<Shared> own_;
    Shared& shared_;
    ItemPaths paths_;
    std::string itemName_;
    /// From the item's parent down.
    DirectoryStack stack_;
    /// One for each directory of the stack.
    std::vector<Folder> folders_;
    OrderedRecord<PlanRecord> record_;
    /// What the teller does not know yet, if anybody listens.
    PlanRecord news_;
    std::size_t entriesSinceTold_ = 0;
    HandedOverFolders<PlanOutcome> handedOver_;
    std::size_t handledEntries_ = 0;
};

} // namespace zentrill
