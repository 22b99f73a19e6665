#include "deletion/DeletionWalk.h"

#include "platform/SystemError.h"

#include <cerrno>
#include <optional>
#include <utility>

namespace zentrill {

namespace {

/// How often a directory is gone through again because somebody keeps adding to it.
constexpr int rescanLimit = 8;

/// How often an entry is looked at anew because somebody keeps changing it between file and folder.
constexpr int kindChangeLimit = 8;

bool isNotEmpty(int error) {
    return error == ENOTEMPTY || error == EEXIST;
}

bool isNoDirectory(int error) {
    return error == ENOTDIR || error == ELOOP;
}

} // namespace

DeletionWalk::DeletionWalk(const DeletionRules& rules, std::string path, std::string standardizedPath,
                           DirectoryHandle parent)
    : rules_(rules),
      paths_(std::move(path), std::move(standardizedPath)),
      itemName_(paths_.name()),
      stack_(std::move(parent)),
      folders_(1),
      handedOver_(lend(), rules.mayRemove ? DeletionConcurrency{} : rules.concurrency) {}

DeletionWalk::DeletionWalk(const DeletionRules& rules, DeletionSubtree::Task task, DeletionCrew& crew,
                           bool mayHelp)
    : rules_(rules),
      paths_(std::move(task.paths)),
      itemName_(paths_.name()),
      stack_(std::move(task.parent)),
      folders_(1),
      handedOver_(lend(), crew, mayHelp) {}

HandedOverFolders::Walk DeletionWalk::lend() {
    return {.stack = stack_,
            .record = record_,
            .remove =
                [this](DeletionSubtree::Task task, DeletionCrew& crew, bool mayHelp) {
                    return DeletionWalk(rules_, std::move(task), crew, mayHelp)
                        .runUnprotected(EntryKind::directory);
                },
            .finished =
                [this](const DeletionOutcome& outcome) { folder().left = folder().left || outcome.left; }};
}

DeletionOutcome DeletionWalk::run() {
    if (rules_.shield != nullptr && rules_.shield->isProtected(paths_.standardized(""))) {
        recordPreserved(itemName_.c_str());
        return {.record = record_.take(), .left = true};
    }
    return runUnprotected(EntryKind::unknown);
}

DeletionOutcome DeletionWalk::runUnprotected(EntryKind kind) {
    remove(itemName_.c_str(), kind);
    while (stack_.depth() > 1) {
        if (const auto entry = stack_.nextEntry()) {
            handle(entry->name, entry->kind);
        } else if (const int error = stack_.takeListingError(); error != 0) {
            // A directory that somebody removed meanwhile has no entries; removing it will tell.
            if (error != ENOENT) {
                recordFailure(paths_.reported(below()), error);
                folder().left = true;
            }
        } else if (const std::optional<std::string> name = handedOver_.takeBack()) {
            remove(name->c_str(), EntryKind::directory);
        } else {
            leave();
        }
    }
    return {.record = record_.take(), .left = folder().left};
}

void DeletionWalk::handle(const char* name, EntryKind kind) {
    ++handledEntries_;
    if (rules_.shield != nullptr && rules_.shield->isProtectedName(name, folder().explicitNames)) {
        recordPreserved(name);
    } else if (kind != EntryKind::directory || !handOver(name)) {
        remove(name, kind);
    }
}

void DeletionWalk::remove(const char* name, EntryKind kind) {
    for (int attempt = 0; attempt < kindChangeLimit; ++attempt) {
        if (kind == EntryKind::unknown) {
            EntryStatus status;
            const int error = stack_.directory().lookUp(name, status);
            if (error == ENOENT) {
                return;
            }
            if (error != 0) {
                fail(name, error);
                return;
            }
            kind = status.kind;
        }
        const Step step = kind == EntryKind::directory ? enter(name) : removeLeaf(name);
        if (step == Step::done) {
            return;
        }
        kind = EntryKind::unknown;
    }
    fail(name, EBUSY);
}

DeletionWalk::Step DeletionWalk::removeLeaf(const char* name) {
    if (rules_.preserveUnrecognized) {
        if (folder().lookUpError == 0) {
            recordPreserved(name);
        } else {
            fail(name, folder().lookUpError);
        }
        return Step::done;
    }
    if (!mayRemove(name)) {
        folder().left = true;
        return Step::done;
    }
    const int error = stack_.directory().removeFile(name);
    if (error == 0) {
        recordRemoved(name);
        return Step::done;
    }
    if (error == ENOENT) {
        return Step::done;
    }
    if (error == EISDIR || error == EPERM) {
        // Systems disagree on how unlink refuses a directory.
        EntryStatus status;
        if (stack_.directory().lookUp(name, status) == 0 && status.kind == EntryKind::directory) {
            return Step::kindChanged;
        }
    }
    fail(name, error);
    return Step::done;
}

DeletionWalk::Step DeletionWalk::enter(const char* name) {
    if (!mayRemove(name)) {
        folder().left = true;
        return Step::done;
    }
    const int error = stack_.enter(name);
    if (error == 0) {
        begin();
        return Step::done;
    }
    if (error == ENOENT) {
        return Step::done;
    }
    if (isNoDirectory(error)) {
        return Step::kindChanged;
    }
    if (error != EXDEV && rules_.shield == nullptr) {
        return removeUnread(name, error);
    }
    fail(name, error == EXDEV ? EBUSY : error); // EBUSY is what the system says of removing a mount point.
    return Step::done;
}

/// A folder that must not be read may still be empty.
DeletionWalk::Step DeletionWalk::removeUnread(const char* name, int openingError) {
    const int error = stack_.directory().removeDirectory(name);
    if (error == ENOTDIR) {
        return Step::kindChanged;
    }
    if (error == 0) {
        recordRemoved(name);
    } else if (error != ENOENT) {
        fail(name, isNotEmpty(error) ? openingError : error);
    }
    return Step::done;
}

/// Gathers what there is to know of the directory just entered.
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
        // Once for all entries, which are then kept as what the directory says they are.
        EntryStatus ignored;
        entered.lookUpError = stack_.directory().lookUp(".", ignored);
    }
}

void DeletionWalk::leave() {
    if (!stack_.openDirectoryAround()) {
        stack_.leave();
        // The folder around it is out of reach, with whatever it still holds.
        recordFailure(paths_.reported(below()), ESTALE);
        folder().left = true;
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
        // Somebody put a file or a link in its place; a folder put there in turn is not entered again.
        if (removeLeaf(name.c_str()) == Step::kindChanged) {
            fail(name.c_str(), EBUSY);
        }
    } else if (error != ENOENT) {
        fail(name.c_str(), error);
    }
}

/// Goes through the top directory again, if that has not been done too often.
bool DeletionWalk::rescan() {
    if (folder().rescans >= rescanLimit || stack_.rewind() != 0) {
        return false;
    }
    ++folder().rescans;
    return true;
}

/// Leaves the folder `name` of the top directory to another thread, if one has nothing to do.
bool DeletionWalk::handOver(const char* name) {
    if (!handedOver_.areWanted(handledEntries_)) {
        return false;
    }
    return handedOver_.handOver(
        name, ItemPaths(pathOf(name), paths_.standardized(below()).append("/").append(name)));
}

std::string_view DeletionWalk::below() const {
    return stack_.relativePath().substr(itemName_.size());
}

std::string DeletionWalk::pathOf(const char* name) const {
    return stack_.depth() == 1 ? paths_.reported("") : paths_.reported(below(), name);
}

bool DeletionWalk::mayRemove(const char* name) const {
    return !rules_.mayRemove || rules_.mayRemove(pathOf(name));
}

void DeletionWalk::recordRemoved(const char* name) {
    DeletionRecord& record = record_.current();
    ++record.removedCount;
    if (rules_.shield != nullptr) {
        record.report.removed.push_back(pathOf(name));
    }
}

void DeletionWalk::recordPreserved(const char* name) {
    record_.current().report.preserved.push_back(pathOf(name));
    folder().left = true;
}

void DeletionWalk::fail(const char* name, int error) {
    recordFailure(pathOf(name), error);
    folder().left = true;
}

void DeletionWalk::recordFailure(std::string path, int error) {
    DeletionRecord& record = record_.current();
    if (rules_.shield != nullptr) {
        record.report.failures.push_back(path + ": " + systemDescription(error));
    }
    if (!record.firstFailure) {
        record.firstFailure = DeletionRecord::Failure{.path = std::move(path), .error = error};
    }
}

} // namespace zentrill
