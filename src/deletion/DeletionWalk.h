#pragma once

#include "deletion/DeletionCrew.h"
#include "deletion/DeletionOutcome.h"
#include "deletion/DeletionRules.h"
#include "deletion/DirectoryStack.h"
#include "deletion/HandedOverFolders.h"
#include "deletion/OrderedRecord.h"
#include "platform/DirectoryHandle.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace zentrill {

/// Removes one item with everything in it, holding on to open directories so that no swapped folder or link
/// can lead it elsewhere. It needs neither stack nor descriptors in proportion to the tree's depth, nor
/// memory in proportion to its size beyond what is reported.
///
/// In a large tree folders are left to other threads as soon as these have nothing to do. Each of them is
/// walked in the same way from its own open parent, is done before the folder around it is removed, and is
/// recorded where one thread alone would have recorded it.
class DeletionWalk {
public:
    /// `path` is the item as reports are to call it, `standardizedPath` the same standardized; `parent` is
    /// the open folder that holds it. `rules` outlive the walk.
    DeletionWalk(const DeletionRules& rules, std::string path, std::string standardizedPath,
                 DirectoryHandle parent);

    /// For a folder that another walk of the same deletion left to this thread; `crew` outlives the walk,
    /// `mayHelp` is as for `DeletionCrew::await`.
    DeletionWalk(const DeletionRules& rules, std::string path, std::string standardizedPath,
                 DirectoryHandle parent, DeletionCrew& crew, bool mayHelp);

    /// Removes the item; `run` or `runFolder`, once for each object.
    [[nodiscard]] DeletionOutcome run();

    /// The same for what is known to be a folder of which nothing but its contents may be protected.
    [[nodiscard]] DeletionOutcome runFolder() { return runUnprotected(EntryKind::directory); }

private:
    enum class Step : std::uint8_t { done, kindChanged };

    [[nodiscard]] DeletionOutcome runUnprotected(EntryKind kind);

    [[nodiscard]] DirectoryFrame& top() { return stack_.top(); }

    /// The next unhandled entry's index in the top frame, reading on where needed; nothing at the end.
    [[nodiscard]] std::optional<std::size_t> nextEntry();
    void handle(const char* name, EntryKind kind);
    void remove(const char* name, EntryKind kind);
    [[nodiscard]] Step removeLeaf(const char* name);
    [[nodiscard]] Step enter(const char* name);
    [[nodiscard]] Step removeUnread(const char* name, int openingError);
    void push(const char* name, DirectoryHandle directory);
    void leave();

    [[nodiscard]] bool handOver(const char* name);
    [[nodiscard]] bool mayRemove(const char* name) const;
    void recordRemoved(const char* name);
    void recordPreserved(const char* name);
    void fail(const char* name, int error);
    void recordFailure(std::string path, int error);

    const DeletionRules& rules_;
    /// The item's path in the form that the shield compares.
    std::string standardizedPath_;
    DirectoryStack stack_;
    OrderedRecord record_;
    HandedOverFolders handedOver_;
    std::size_t handledEntries_ = 0;
};

} // namespace zentrill
