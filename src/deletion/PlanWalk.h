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

/// Goes through an item in the order of `DeletionWalk`, applies the same rules and removes nothing. In a
/// large tree it leaves folders to other threads in the same way, each with its place in the plan. Memory
/// grows with the depth of the tree and with the files of several names, not with the number of entries.
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
        /// Of the files in it, and in folders below that go; a file counts once for each name.
        std::int64_t logicalBytes = 0;
        RemovalForecast forecast;
        // Without braces GCC warns of missing initializers.
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

    /// For a folder that another walk of the same plan, `around`, left to this thread; `mayHelp` is as for
    /// `DeletionCrew::await`.
    PlanWalk(const PlanWalk& around, SubtreeTask task, DeletionCrew& crew, bool mayHelp);

    [[nodiscard]] PlanRecord emptyRecord() const;
    [[nodiscard]] HandedOverFolders<PlanOutcome>::Walk lend();
    [[nodiscard]] PlanOutcome goThrough();
    [[nodiscard]] bool stopRequested();
    /// Passes on what was found since the last call.
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
    /// Counts the entry `name` of the top directory among those of that `end`, and lists it if there is room.
    /// A null `name` stands for the directory itself.
    void list(const char* name, End end, const EntryStatus& status);
    /// Lists and sizes the entry `name` of the top directory; the size of a folder is that of what goes with
    /// it.
    void count(const char* name, End end, const EntryStatus& status);
    /// Notes one more name of a file, and its end.
    [[nodiscard]] LinkedFiles::Count meet(const EntryStatus& file, End end);
    /// An entry that could not be looked up has an empty status.
    void fail(const char* name, int error, const EntryStatus& status = {});
    void failHere(int error);
    /// Whether the plan has room for one more.
    [[nodiscard]] bool listsFailures();
    void listFailure(const std::string& path, int error);

    const DeletionRules& rules_;
    const PlanOptions& options_;
    /// Set in the first walk.
    std::unique_ptr<Shared> own_;
    Shared& shared_;
    ItemPaths paths_;
    std::string itemName_;
    /// From the item's parent down.
    DirectoryStack stack_;
    /// One for each directory of the stack.
    std::vector<Folder> folders_;
    OrderedRecord<PlanRecord> record_;
    /// What the teller has not got yet.
    PlanRecord news_;
    std::size_t entriesSinceTold_ = 0;
    HandedOverFolders<PlanOutcome> handedOver_;
    std::size_t handledEntries_ = 0;
};

} // namespace zentrill
