#pragma once

#include "deletion/DeletionConcurrency.h"
#include "deletion/DeletionCrew.h"
#include "deletion/DeletionOutcome.h"
#include "deletion/DeletionSubtree.h"
#include "deletion/ItemPaths.h"
#include "deletion/OrderedRecord.h"
#include "platform/DirectoryStack.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zentrill {

/// The folders that a walk leaves to other threads, each with its place in the walk's record.
///
/// They belong to the directory that was on top of the walk's stack when they were handed over, and are all
/// seen to their end by `takeBack` before the walk leaves that directory.
class HandedOverFolders {
public:
    /// What the walk lends. The functions outlive this object; so does the rest.
    struct Walk {
        const DirectoryStack& stack;
        OrderedRecord& record;
        /// Removes a folder on the thread that takes it.
        std::function<DeletionOutcome(DeletionSubtree::Task task, DeletionCrew& crew, bool mayHelp)> remove;
        /// Told what became of a folder of the top directory.
        std::function<void(const DeletionOutcome& outcome)> finished;
    };

    /// For the walk that begins a deletion: the other threads are started once it pays.
    HandedOverFolders(Walk walk, const DeletionConcurrency& concurrency);

    /// For the walk of a handed-over folder; `mayHelp` as for `DeletionCrew::await`.
    HandedOverFolders(Walk walk, DeletionCrew& crew, bool mayHelp);

    ~HandedOverFolders();

    HandedOverFolders(const HandedOverFolders&) = delete;
    HandedOverFolders(HandedOverFolders&&) = delete;
    HandedOverFolders& operator=(const HandedOverFolders&) = delete;
    HandedOverFolders& operator=(HandedOverFolders&&) = delete;

    /// Whether another thread has too little to do, after the walk has handled that many entries.
    [[nodiscard]] bool areWanted(std::size_t handledEntries);

    /// Leaves the folder `name` of the top directory, whose paths are `paths`, to whichever thread takes it;
    /// false if it cannot. `item` is that of the whole deletion.
    [[nodiscard]] bool handOver(const char* name, ItemPaths paths, const FileIdentity& item);

    /// Waits for what was handed over in the top directory. What nobody has begun comes back, one folder at a
    /// time: its name, for the walk to remove now, which is recorded in the folder's own place.
    [[nodiscard]] std::optional<std::string> takeBack();

    /// The same where the top directory is to be left as it is: what nobody has begun is dropped.
    void drop();

private:
    struct Folder {
        std::size_t depth;
        std::string name;
        OrderedRecord::Place place;
        /// Null when it came back.
        std::shared_ptr<DeletionSubtree> subtree;
    };

    [[nodiscard]] bool isOfTop(const Folder& folder) const { return folder.depth == walk_.stack.depth(); }

    void finishLast();
    void absorbFinished();
    void absorb(Folder& folder);

    Walk walk_;
    DeletionConcurrency concurrency_;
    DeletionSubtree::Remover remove_;
    /// Set in the walk that began it all.
    std::unique_ptr<DeletionCrew> ownCrew_;
    DeletionCrew* crew_ = nullptr;
    /// Whether this thread may take over other work while it waits.
    bool mayHelp_ = true;
    /// Those of deeper directories after those of the directories around them.
    std::vector<Folder> folders_;
};

} // namespace zentrill
