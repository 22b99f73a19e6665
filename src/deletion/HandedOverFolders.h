#pragma once

#include "deletion/DeletionConcurrency.h"
#include "deletion/DeletionCrew.h"
#include "deletion/DeletionSubtree.h"
#include "deletion/ItemPaths.h"
#include "deletion/OrderedRecord.h"
#include "platform/DirectoryHandle.h"
#include "platform/DirectoryStack.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iterator>
#include <memory>
#include <optional>
#include <ranges>
#include <string>
#include <utility>
#include <vector>

namespace zentrill {

/// The folders that a walk leaves to other threads, each with its place in the walk's record. `Outcome` is
/// the result of a walk, with a `record` in it.
///
/// A folder belongs to the directory that was on top of the walk's stack when it was handed over. `takeBack`
/// sees all of them to their end before the walk leaves that directory.
template <typename Outcome>
class HandedOverFolders {
    using Record = OrderedRecord<decltype(Outcome::record)>;
    using Subtree = DeletionSubtree<Outcome>;

public:
    /// What this object borrows from the walk, all of which outlives it.
    struct Walk {
        const DirectoryStack& stack;
        Record& record;
        /// Walks through a folder on the thread that takes it.
        std::function<Outcome(SubtreeTask task, DeletionCrew& crew, bool mayHelp)> subtree;
        /// Receives what became of a folder of the top directory.
        std::function<void(const Outcome& outcome)> finished;
    };

    /// For the first walk, which starts the other threads once that pays.
    HandedOverFolders(Walk walk, const DeletionConcurrency& concurrency)
        : walk_(std::move(walk)), concurrency_(concurrency), walker_([this](SubtreeTask task, bool mayHelp) {
              return walk_.subtree(std::move(task), *crew_, mayHelp);
          }) {}

    /// For the walk of a handed-over folder; `mayHelp` as for `DeletionCrew::await`.
    HandedOverFolders(Walk walk, DeletionCrew& crew, bool mayHelp)
        : HandedOverFolders(std::move(walk), DeletionConcurrency{}) {
        crew_ = &crew;
        mayHelp_ = mayHelp;
    }

    ~HandedOverFolders() = default;

    HandedOverFolders(const HandedOverFolders&) = delete;
    HandedOverFolders(HandedOverFolders&&) = delete;
    HandedOverFolders& operator=(const HandedOverFolders&) = delete;
    HandedOverFolders& operator=(HandedOverFolders&&) = delete;

    /// Whether another thread needs work; `handledEntries` is how many the walk has done so far.
    [[nodiscard]] bool areWanted(std::size_t handledEntries) {
        if (crew_ == nullptr && concurrency_.threads > 1 && handledEntries > concurrency_.afterEntries) {
            ownCrew_ = std::make_unique<DeletionCrew>(concurrency_.threads - 1);
            crew_ = ownCrew_.get();
        }
        return crew_ != nullptr && crew_->wantsJobs();
    }

    /// Leaves the folder `name` of the top directory to whichever thread takes it; returns false if that is
    /// not possible. `paths` are those of the folder, `item` is that of the whole deletion.
    [[nodiscard]] bool handOver(const char* name, ItemPaths paths, const FileIdentity& item) {
        DirectoryHandle parent;
        if (walk_.stack.directory().duplicate(parent) != 0) {
            return false;
        }
        absorbFinished();
        auto subtree = std::make_shared<Subtree>(
            walker_, SubtreeTask{.parent = std::move(parent), .paths = std::move(paths), .item = item});
        folders_.push_back({.depth = walk_.stack.depth(),
                            .name = name,
                            .place = walk_.record.keepPlace(),
                            .subtree = subtree});
        crew_->offer(std::move(subtree));
        return true;
    }

    /// Waits for the folders handed over in the top directory. Folders that no thread has begun come back,
    /// one for each call: returns the name, and the walk then records into the folder's place.
    [[nodiscard]] std::optional<std::string> takeBack() {
        while (!folders_.empty() && isOfTop(folders_.back())) {
            Folder& last = folders_.back();
            if (last.subtree && crew_->withdraw(*last.subtree)) {
                last.subtree.reset();
                if (walk_.stack.directory()) {
                    walk_.record.goTo(last.place);
                    return std::move(last.name);
                }
                // The directory is out of reach, which has been reported.
            }
            finishLast();
        }
        return std::nullopt;
    }

    /// The same if the top directory must stay as it is: folders that no thread has begun are dropped.
    void drop() {
        while (!folders_.empty() && isOfTop(folders_.back())) {
            Folder& last = folders_.back();
            if (last.subtree && crew_->withdraw(*last.subtree)) {
                last.subtree.reset();
            }
            finishLast();
        }
    }

private:
    struct Folder {
        std::size_t depth = 0;
        std::string name;
        typename Record::Place place;
        /// Null once it has come back.
        std::shared_ptr<Subtree> subtree;
    };

    [[nodiscard]] bool isOfTop(const Folder& folder) const { return folder.depth == walk_.stack.depth(); }

    void finishLast() {
        Folder& last = folders_.back();
        if (last.subtree) {
            crew_->await(*last.subtree, mayHelp_);
            absorb(last);
        } else {
            walk_.record.close(last.place);
        }
        folders_.pop_back();
    }

    /// Keeps the list short, however many folders there are and however long one of them takes.
    void absorbFinished() {
        const auto ofTop = [this](const Folder& folder) { return isOfTop(folder); };
        const auto first = std::ranges::find_if_not(folders_ | std::views::reverse, ofTop).base();
        const auto isDone = [this](Folder& folder) {
            const bool finished = folder.subtree->isFinished();
            if (finished) {
                absorb(folder);
            }
            return finished;
        };
        folders_.erase(std::remove_if(first, folders_.end(), isDone), folders_.end());
    }

    void absorb(Folder& folder) {
        Outcome& outcome = folder.subtree->outcome();
        ++outcome.record.foldersOfOthers;
        walk_.finished(outcome);
        walk_.record.fill(folder.place, std::move(outcome.record));
    }

    Walk walk_;
    DeletionConcurrency concurrency_;
    typename Subtree::Walker walker_;
    /// Set in the first walk.
    std::unique_ptr<DeletionCrew> ownCrew_;
    DeletionCrew* crew_ = nullptr;
    /// Whether this thread may do other jobs while it waits.
    bool mayHelp_ = true;
    /// In the order of their directories' depth.
    std::vector<Folder> folders_;
};

} // namespace zentrill
