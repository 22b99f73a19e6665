#pragma once

#include "deletion/DeletionCrew.h"
#include "deletion/DeletionOutcome.h"
#include "deletion/DeletionProgress.h"
#include "deletion/DeletionRules.h"
#include "deletion/HandedOverFolders.h"
#include "deletion/HeldThread.h"
#include "deletion/ItemPaths.h"
#include "deletion/MovedFolder.h"
#include "deletion/OrderedRecord.h"
#include "platform/DirectoryHandle.h"
#include "platform/DirectoryStack.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zentrill {

/// Removes one item with everything in it. It works relative to open directories, so that no swapped folder
/// or link can lead it elsewhere. Neither the call stack nor the number of descriptors grows with the depth
/// of the tree, and memory grows only with what is reported.
///
/// In a large tree it leaves folders to other threads that have nothing to do. Each of these folders is
/// walked in the same way from its own open parent, is done before the folder around it is removed, and is
/// recorded where a single thread would have recorded it.
class DeletionWalk {
public:
    /// `path` is the item as reports are to call it, `standardizedPath` the same standardized; `parent` is
    /// the open folder that holds it. `rules` outlive the walk.
    DeletionWalk(const DeletionRules& rules, std::string path, std::string standardizedPath,
                 DirectoryHandle parent);

    /// Removes the item; once for each object.
    [[nodiscard]] DeletionOutcome run();

private:
    enum class Step : std::uint8_t { done, kindChanged };

    /// What the deletion knows of a directory of the stack.
    struct Folder {
        /// Something inside stays, so the directory does too.
        bool left = false;
        /// Why no entry in here can be looked up; 0 if they can.
        int lookUpError = 0;
        int rescans = 0;
        std::vector<std::string_view> explicitNames;
    };

    /// For a folder that another walk of the same deletion left to this thread; `mayHelp` is as for
    /// `DeletionCrew::await`.
    DeletionWalk(const DeletionRules& rules, SubtreeTask task, DeletionCrew& crew, bool mayHelp);

    [[nodiscard]] DeletionOutcome runHere();
    [[nodiscard]] DeletionOutcome outcome();
    /// Removes what the item, just entered, holds.
    void empty();

    [[nodiscard]] HandedOverFolders<DeletionOutcome>::Walk lend();

    /// Of the top directory.
    [[nodiscard]] Folder& folder() { return folders_[stack_.depth() - 1]; }

    void handle(const char* name, EntryKind kind);
    void remove(const char* name, EntryKind kind);
    [[nodiscard]] Step removeLeaf(const char* name);
    [[nodiscard]] Step enter(const char* name);
    [[nodiscard]] Step removeUnread(const char* name, int openingError);
    void begin();
    void leave();
    void leaveMoved();
    [[nodiscard]] bool rescan();

    [[nodiscard]] bool handOver(const char* name);
    [[nodiscard]] bool mayRemove(const char* name);
    /// What leads from the item to the top directory, as for `ItemPaths`.
    [[nodiscard]] std::string_view below() const;
    [[nodiscard]] std::string pathOf(const char* name) const;
    /// Tells whoever follows the deletion that it has come to the entry.
    void tell(const char* name);
    void recordRemoved(const char* name);
    void recordPreserved(const char* name);
    void fail(const char* name, int error);
    /// Of the top directory itself.
    void failTop(int error);
    void recordFailure(std::string path, std::string description);

    const DeletionRules& rules_;
    ItemPaths paths_;
    std::string itemName_;
    /// From the item's parent down.
    DirectoryStack stack_;
    /// One for each directory of the stack; those beyond its top keep their memory for later ones.
    std::vector<Folder> folders_;
    OrderedRecord<DeletionRecord> record_;
    HandedOverFolders<DeletionOutcome> handedOver_;
    MovedFolder moved_;
    /// Another thread found that its folder of the top directory lies in a moved one.
    bool movedAround_ = false;
    HeldThread held_;
    /// Counts the removals; null if nobody follows the deletion.
    DeletionProgress::Counter* counter_;
    std::size_t handledEntries_ = 0;
};

} // namespace zentrill
