#include "deletion/HandedOverFolders.h"

#include "platform/DirectoryHandle.h"

#include <algorithm>
#include <iterator>
#include <ranges>
#include <utility>

namespace zentrill {

HandedOverFolders::HandedOverFolders(Walk walk, const DeletionConcurrency& concurrency)
    : walk_(std::move(walk)),
      concurrency_(concurrency),
      remove_([this](DeletionSubtree::Task task, bool mayHelp) {
          return walk_.remove(std::move(task), *crew_, mayHelp);
      }) {}

HandedOverFolders::HandedOverFolders(Walk walk, DeletionCrew& crew, bool mayHelp)
    : HandedOverFolders(std::move(walk), DeletionConcurrency{}) {
    crew_ = &crew;
    mayHelp_ = mayHelp;
}

HandedOverFolders::~HandedOverFolders() = default;

bool HandedOverFolders::areWanted(std::size_t handledEntries) {
    if (crew_ == nullptr && concurrency_.threads > 1 && handledEntries > concurrency_.afterEntries) {
        ownCrew_ = std::make_unique<DeletionCrew>(concurrency_.threads - 1);
        crew_ = ownCrew_.get();
    }
    return crew_ != nullptr && crew_->wantsJobs();
}

bool HandedOverFolders::handOver(const char* name, ItemPaths paths, const FileIdentity& item) {
    DirectoryHandle parent;
    if (walk_.stack.directory().duplicate(parent) != 0) {
        return false;
    }
    absorbFinished();
    auto subtree = std::make_shared<DeletionSubtree>(
        remove_, DeletionSubtree::Task{.parent = std::move(parent), .paths = std::move(paths), .item = item});
    folders_.push_back(
        {.depth = walk_.stack.depth(), .name = name, .place = walk_.record.keepPlace(), .subtree = subtree});
    crew_->offer(std::move(subtree));
    return true;
}

std::optional<std::string> HandedOverFolders::takeBack() {
    while (!folders_.empty() && isOfTop(folders_.back())) {
        Folder& last = folders_.back();
        if (last.subtree && crew_->withdraw(*last.subtree)) {
            last.subtree.reset();
            if (walk_.stack.directory()) {
                walk_.record.goTo(last.place);
                return std::move(last.name);
            }
            // The directory is out of reach, and reported so.
        }
        finishLast();
    }
    return std::nullopt;
}

void HandedOverFolders::drop() {
    while (!folders_.empty() && isOfTop(folders_.back())) {
        Folder& last = folders_.back();
        if (last.subtree && crew_->withdraw(*last.subtree)) {
            last.subtree.reset();
        }
        finishLast();
    }
}

void HandedOverFolders::finishLast() {
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
void HandedOverFolders::absorbFinished() {
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

void HandedOverFolders::absorb(Folder& folder) {
    DeletionOutcome& outcome = folder.subtree->outcome();
    ++outcome.record.foldersOfOthers;
    walk_.finished(outcome);
    walk_.record.fill(folder.place, std::move(outcome.record));
}

} // namespace zentrill
