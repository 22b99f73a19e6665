#include "deletion/HandedOverFolders.h"

#include "deletion/DeletionSubtree.h"
#include "platform/DirectoryHandle.h"

#include <algorithm>
#include <iterator>
#include <ranges>
#include <utility>

namespace zentrill {

HandedOverFolders::HandedOverFolders(const DeletionRules& rules, DirectoryStack& stack, OrderedRecord& record)
    : rules_(rules), stack_(stack), record_(record) {}

HandedOverFolders::HandedOverFolders(const DeletionRules& rules, DirectoryStack& stack, OrderedRecord& record,
                                     DeletionCrew& crew, bool mayHelp)
    : rules_(rules), stack_(stack), record_(record), crew_(&crew), mayHelp_(mayHelp) {}

HandedOverFolders::~HandedOverFolders() = default;

bool HandedOverFolders::areWanted(std::size_t handledEntries) {
    if (crew_ == nullptr && rules_.concurrency.threads > 1 && !rules_.mayRemove &&
        handledEntries > rules_.concurrency.afterEntries) {
        ownCrew_ = std::make_unique<DeletionCrew>(rules_.concurrency.threads - 1);
        crew_ = ownCrew_.get();
    }
    return crew_ != nullptr && crew_->wantsJobs();
}

bool HandedOverFolders::handOver(const char* name, std::string standardizedPath) {
    DirectoryHandle parent;
    if (stack_.top().directory.duplicate(parent) != 0) {
        return false;
    }
    absorbFinished();
    auto subtree = std::make_shared<DeletionSubtree>(rules_, *crew_, std::move(parent), stack_.pathOf(name),
                                                     std::move(standardizedPath));
    folders_.push_back(
        {.depth = stack_.depth(), .name = name, .place = record_.keepPlace(), .subtree = subtree});
    crew_->offer(std::move(subtree));
    return true;
}

std::optional<std::string> HandedOverFolders::takeBack() {
    while (!folders_.empty() && isOfTop(folders_.back())) {
        Folder& last = folders_.back();
        if (last.subtree && crew_->withdraw(*last.subtree)) {
            last.subtree.reset();
            if (stack_.top().directory) {
                record_.goTo(last.place);
                return std::move(last.name);
            }
            // The directory is out of reach, and reported so.
        }
        if (last.subtree) {
            crew_->await(*last.subtree, mayHelp_);
            absorb(last);
        } else {
            record_.close(last.place);
        }
        folders_.pop_back();
    }
    return std::nullopt;
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
    record_.fill(folder.place, std::move(outcome.record));
    stack_.top().left = stack_.top().left || outcome.left;
}

} // namespace zentrill
