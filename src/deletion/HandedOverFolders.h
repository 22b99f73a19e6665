#pragma once

#include "deletion/DeletionCrew.h"
#include "deletion/DeletionRules.h"
#include "deletion/DirectoryStack.h"
#include "deletion/OrderedRecord.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zentrill {

class DeletionSubtree;

/// The folders that a walk leaves to other threads, each with its place in the walk's record.
///
/// They belong to the directory that was on top of the walk's stack when they were handed over, and are all
/// seen to their end by `takeBack` before the walk leaves that directory.
class HandedOverFolders {
public:
    /// For the walk that begins a deletion: the other threads are started once it pays.
    HandedOverFolders(const DeletionRules& rules, DirectoryStack& stack, OrderedRecord& record);

    /// For the walk of a handed-over folder; `mayHelp` as for `DeletionCrew::await`.
    HandedOverFolders(const DeletionRules& rules, DirectoryStack& stack, OrderedRecord& record,
                      DeletionCrew& crew, bool mayHelp);

    ~HandedOverFolders();

    HandedOverFolders(const HandedOverFolders&) = delete;
    HandedOverFolders(HandedOverFolders&&) = delete;
    HandedOverFolders& operator=(const HandedOverFolders&) = delete;
    HandedOverFolders& operator=(HandedOverFolders&&) = delete;

    /// Whether another thread has too little to do, after the walk has handled that many entries.
    [[nodiscard]] bool areWanted(std::size_t handledEntries);

    /// Leaves the folder `name` of the top directory to whichever thread takes it; false if it cannot.
    /// `standardizedPath` is the folder's.
    [[nodiscard]] bool handOver(const char* name, std::string standardizedPath);

    /// Waits for what was handed over in the top directory. What nobody has begun comes back, one folder at a
    /// time: its name, for the walk to remove now, which is recorded in the folder's own place.
    [[nodiscard]] std::optional<std::string> takeBack();

private:
    struct Folder {
        std::size_t depth;
        std::string name;
        OrderedRecord::Place place;
        /// Null when it came back.
        std::shared_ptr<DeletionSubtree> subtree;
    };

    [[nodiscard]] bool isOfTop(const Folder& folder) const { return folder.depth == stack_.depth(); }

    void absorbFinished();
    void absorb(Folder& folder);

    const DeletionRules& rules_;
    DirectoryStack& stack_;
    OrderedRecord& record_;
    /// Set in the walk that began it all.
    std::unique_ptr<DeletionCrew> ownCrew_;
    DeletionCrew* crew_ = nullptr;
    /// Whether this thread may take over other work while it waits.
    bool mayHelp_ = true;
    /// Those of deeper directories after those of the directories around them.
    std::vector<Folder> folders_;
};

} // namespace zentrill
