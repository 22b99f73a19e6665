#include "deletion/DeletionWalk.h"

#include "platform/SystemError.h"

#include <cerrno>
#include <optional>
#include <utility>

namespace zentrill {

namespace {

/// How often a directory is listed again because somebody keeps adding to it.
constexpr int rescanLimit = 8;

bool isNotEmpty(int error) {
    return error == ENOTEMPTY || error == EEXIST;
}

DeletionProgress::Counter* counterOf(const DeletionRules& rules) {
    return rules.progress == nullptr ? nullptr : &rules.progress->counter();
}

} // namespace

DeletionWalk::DeletionWalk(const DeletionRules& rules, std::string path, std::string standardizedPath,
                           DirectoryHandle parent)
    : rules_(rules),
      paths_(std::move(path), std::move(standardizedPath)),
      itemName_(paths_.name()),
      stack_(std::move(parent)),
      folders_(1),
      handedOver_(lend(), rules.mayRemove ? DeletionConcurrency{} : rules.concurrency),
      moved_(stack_),
      held_(rules.domain),
      counter_(counterOf(rules)) {}

DeletionWalk::DeletionWalk(const DeletionRules& rules, SubtreeTask task, DeletionCrew& crew, bool mayHelp)
    : rules_(rules),
      paths_(std::move(task.paths)),
      itemName_(paths_.name()),
      stack_(std::move(task.parent)),
      folders_(1),
      handedOver_(lend(), crew, mayHelp),
      moved_(stack_),
      held_(DeletionDomain{}),
      counter_(counterOf(rules)) {
    moved_.setItem(task.item);
}

HandedOverFolders<DeletionOutcome>::Walk DeletionWalk::lend() {
    return {.stack = stack_,
            .record = record_,
            .subtree =
                [this](SubtreeTask task, DeletionCrew& crew, bool mayHelp) {
                    return DeletionWalk(rules_, std::move(task), crew, mayHelp).runHere();
                },
            .finished =
                [this](const DeletionOutcome& outcome) {
                    folder().left = folder().left || outcome.left;
                    movedAround_ = movedAround_ || outcome.movedAway;
                }};
}

DeletionOutcome DeletionWalk::run() {
    if (rules_.shield != nullptr && rules_.shield->isProtected(paths_.standardized(""))) {
        recordPreserved(itemName_.c_str());
        return {.record = record_.take(), .left = true};
    }
    tell(itemName_.c_str());
    remove(itemName_.c_str(), EntryKind::unknown);
    // The domain does not allow the removal of the item's own entry, so this thread does it.
    while (stack_.depth() > 1) {
        moved_.setItem(stack_.directory().identity());
        held_.run(stack_.directory(), [this] { empty(); });
        moved_.setItem({}); // A failure at its own entry does not mean that it was moved.
        leave();
    }
    return outcome();
}

/// For a folder inside the item, on a thread that is already held to the item.
DeletionOutcome DeletionWalk::runHere() {
    remove(itemName_.c_str(), EntryKind::directory);
    while (stack_.depth() > 1) {
        empty();
        leave();
    }
    return outcome();
}

DeletionOutcome DeletionWalk::outcome() {
    return {.record = record_.take(), .left = folder().left, .movedAway = moved_.isAboveWalk()};
}

void DeletionWalk::empty() {
    while (true) {
        if (std::exchange(movedAround_, false) && !moved_.notice()) {
            failTop(EACCES); // It was moved back meanwhile.
        }
        if (moved_.holdsTop()) {
            handedOver_.drop();
            movedAround_ = false; // This walk knows of the moved folder already.
        } else if (const auto entry = stack_.nextEntry()) {
            handle(entry->name, entry->kind);
            continue;
        } else if (const int error = stack_.takeListingError(); error != 0) {
            // A directory that somebody has removed has no entries; its own removal notices that.
            if (error != ENOENT) {
                failTop(error);
            }
            continue;
        } else {
            const std::optional<std::string> name = handedOver_.takeBack();
            if (name && !movedAround_) {
                remove(name->c_str(), EntryKind::directory);
            }
            if (name || movedAround_) {
                continue;
            }
        }
        if (stack_.depth() == 2) {
            return;
        }
        leave();
    }
}

void DeletionWalk::handle(const char* name, EntryKind kind) {
    ++handledEntries_;
    tell(name);
    if (rules_.shield != nullptr && rules_.shield->isProtectedName(name, folder().explicitNames)) {
        recordPreserved(name);
    } else if (kind != EntryKind::directory || !handOver(name)) {
        remove(name, kind);
    }
}

/// Prepares for the entries of the directory just entered.
void DeletionWalk::begin() {
    if (folders_.size() < stack_.depth()) {
        folders_.emplace_back();
    }
    Folder& entered = folder();
    entered.left = false;
    entered.lookUpError = 0;
    entered.rescans = 0;
    entered.explicitNames.clear();
    if (rules_.shield != nullptr && rules_.shield->hasExplicitCredentials()) {
        entered.explicitNames = rules_.shield->explicitNames(paths_.standardized(below()));
    }
    if (rules_.preserveUnrecognized) {
        // Asked once for all entries, whose kinds are then taken from the listing.
        EntryStatus ignored;
        entered.lookUpError = stack_.directory().lookUp(".", ignored);
    }
}

void DeletionWalk::leave() {
    if (moved_.holdsTop()) {
        leaveMoved();
        return;
    }
    if (!stack_.openDirectoryAround()) {
        stack_.leave();
        failTop(ESTALE); // The folder around it is out of reach, and with it all that it still holds.
        return;
    }
    if (folder().left) {
        stack_.leave();
        folder().left = true;
        return;
    }
    const std::string name = stack_.nameOfTop();
    const int error = stack_.directoryAround().removeDirectory(name.c_str());
    if (isNotEmpty(error) && rescan()) {
        return;
    }
    stack_.leave();
    if (error == 0) {
        recordRemoved(name.c_str());
    } else if (error == ENOTDIR) {
        // Somebody put a file or a link in its place. If that becomes a folder again, it is not entered.
        if (removeLeaf(name.c_str()) == Step::kindChanged) {
            fail(name.c_str(), EBUSY);
        }
    } else if (error != ENOENT) {
        fail(name.c_str(), error);
    }
}

/// Reports the moved folder in one line, whatever it holds.
void DeletionWalk::leaveMoved() {
    const bool wholeFolder = moved_.isTop();
    std::string path = wholeFolder ? paths_.reported(below()) : std::string();
    const bool reached = stack_.leave();
    folder().left = true;
    if (wholeFolder) {
        moved_.forget();
        recordFailure(std::move(path), "Moved elsewhere during the deletion");
        if (!reached) {
            failTop(ESTALE);
        }
    }
}

/// Starts over with the top directory, unless that has happened too often.
bool DeletionWalk::rescan() {
    if (folder().rescans >= rescanLimit || stack_.rewind() != 0) {
        return false;
    }
    ++folder().rescans;
    return true;
}

/// Leaves the folder `name` of the top directory to another thread that has nothing to do, if there is one.
bool DeletionWalk::handOver(const char* name) {
    if (!handedOver_.areWanted(handledEntries_)) {
        return false;
    }
    return handedOver_.handOver(
        name, ItemPaths(pathOf(name), paths_.standardized(below()).append("/").append(name)), moved_.item());
}

std::string_view DeletionWalk::below() const {
    return stack_.relativePath().substr(itemName_.size());
}

std::string DeletionWalk::pathOf(const char* name) const {
    return stack_.depth() == 1 ? paths_.reported("") : paths_.reported(below(), name);
}

bool DeletionWalk::mayRemove(const char* name) {
    return !rules_.mayRemove || held_.ask([&] { return rules_.mayRemove(pathOf(name)); });
}

void DeletionWalk::tell(const char* name) {
    if (counter_ != nullptr && rules_.progress->wantsPath()) {
        rules_.progress->setPath(pathOf(name));
    }
}

void DeletionWalk::recordRemoved(const char* name) {
    DeletionRecord& record = record_.current();
    ++record.removedCount;
    if (counter_ != nullptr) {
        counter_->fetch_add(1, std::memory_order_relaxed);
    }
    if (rules_.shield != nullptr) {
        record.report.removed.push_back(pathOf(name));
    }
}

void DeletionWalk::recordPreserved(const char* name) {
    record_.current().report.preserved.push_back(pathOf(name));
    folder().left = true;
}

void DeletionWalk::fail(const char* name, int error) {
    folder().left = true;
    if (error != EACCES || !moved_.notice()) {
        recordFailure(pathOf(name), systemDescription(error));
    }
}

void DeletionWalk::failTop(int error) {
    folder().left = true;
    recordFailure(paths_.reported(below()), systemDescription(error));
}

void DeletionWalk::recordFailure(std::string path, std::string description) {
    DeletionRecord& record = record_.current();
    if (rules_.shield != nullptr) {
        record.report.failures.push_back(path + ": " + description);
    }
    if (!record.firstFailure) {
        record.firstFailure =
            DeletionRecord::Failure{.path = std::move(path), .description = std::move(description)};
    }
}

} // namespace zentrill
