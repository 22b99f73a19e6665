#include "deletion/DeletionWalk.h"

#include "platform/Paths.h"
#include "platform/SystemError.h"

#include <cerrno>
#include <utility>

namespace zentrill {

namespace {

/// Names read from a directory before its entries are handled, in bytes: few enough that what the kernel has
/// just looked at is still in the processor's cache when it goes: a megabyte at a time is 2 % slower.
constexpr std::size_t listingBytes = std::size_t{16} * 1024;

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
      standardizedPath_(std::move(standardizedPath)),
      stack_(std::move(path), std::string(paths::lastComponent(standardizedPath_)), std::move(parent)),
      handedOver_(rules, stack_, record_) {}

DeletionWalk::DeletionWalk(const DeletionRules& rules, std::string path, std::string standardizedPath,
                           DirectoryHandle parent, DeletionCrew& crew, bool mayHelp)
    : rules_(rules),
      standardizedPath_(std::move(standardizedPath)),
      stack_(std::move(path), std::string(paths::lastComponent(standardizedPath_)), std::move(parent)),
      handedOver_(rules, stack_, record_, crew, mayHelp) {}

DeletionOutcome DeletionWalk::run() {
    if (rules_.shield != nullptr && rules_.shield->isProtected(standardizedPath_)) {
        recordPreserved("");
        return {.record = record_.take(), .left = true};
    }
    return runUnprotected(EntryKind::unknown);
}

DeletionOutcome DeletionWalk::runUnprotected(EntryKind kind) {
    remove(std::string(paths::lastComponent(standardizedPath_)).c_str(), kind);
    while (stack_.depth() > 1) {
        if (const std::optional<std::size_t> index = nextEntry()) {
            handle(top().listing.name(*index), top().listing.kind(*index));
        } else if (const std::optional<std::string> name = handedOver_.takeBack()) {
            remove(name->c_str(), EntryKind::directory);
        } else {
            leave();
        }
    }
    return {.record = record_.take(), .left = top().left};
}

std::optional<std::size_t> DeletionWalk::nextEntry() {
    DirectoryFrame& frame = top();
    while (frame.next == frame.listing.size()) {
        // A directory that somebody removed meanwhile has no entries; removing it will tell.
        if (frame.listingError != 0 && frame.listingError != ENOENT) {
            recordFailure(stack_.pathOfTop(), frame.listingError);
            frame.left = true;
        }
        frame.listingError = 0;
        if (frame.listingComplete) {
            return std::nullopt;
        }
        frame.listing.clear();
        frame.next = 0;
        frame.listingError = frame.directory.readEntries(frame.listing, listingBytes, frame.listingComplete);
        frame.listingComplete = frame.listingComplete || frame.listingError != 0;
    }
    return frame.next++;
}

void DeletionWalk::handle(const char* name, EntryKind kind) {
    ++handledEntries_;
    if (rules_.shield != nullptr && rules_.shield->isProtectedName(name, top().explicitNames)) {
        recordPreserved(name);
    } else if (kind != EntryKind::directory || !handOver(name)) {
        remove(name, kind);
    }
}

void DeletionWalk::remove(const char* name, EntryKind kind) {
    for (int attempt = 0; attempt < kindChangeLimit; ++attempt) {
        if (kind == EntryKind::unknown) {
            FileIdentity ignored;
            const int error = top().directory.lookUp(name, kind, ignored);
            if (error == ENOENT) {
                return;
            }
            if (error != 0) {
                fail(name, error);
                return;
            }
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
        if (top().lookUpError == 0) {
            recordPreserved(name);
        } else {
            fail(name, top().lookUpError);
        }
        return Step::done;
    }
    if (!mayRemove(name)) {
        top().left = true;
        return Step::done;
    }
    const int error = top().directory.removeFile(name);
    if (error == 0) {
        recordRemoved(name);
        return Step::done;
    }
    if (error == ENOENT) {
        return Step::done;
    }
    if (error == EISDIR || error == EPERM) {
        // Systems disagree on how unlink refuses a directory.
        EntryKind kind{};
        FileIdentity ignored;
        if (top().directory.lookUp(name, kind, ignored) == 0 && kind == EntryKind::directory) {
            return Step::kindChanged;
        }
    }
    fail(name, error);
    return Step::done;
}

DeletionWalk::Step DeletionWalk::enter(const char* name) {
    if (!mayRemove(name)) {
        top().left = true;
        return Step::done;
    }
    DirectoryHandle directory;
    const int error = stack_.openChild(name, directory);
    if (error == 0) {
        push(name, std::move(directory));
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
    const int error = top().directory.removeDirectory(name);
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

void DeletionWalk::push(const char* name, DirectoryHandle directory) {
    stack_.push(name, std::move(directory));
    if (rules_.shield != nullptr && rules_.shield->hasExplicitCredentials()) {
        top().explicitNames =
            rules_.shield->explicitNames(standardizedPath_ + std::string(stack_.pathBelowItem()));
    }
    if (rules_.preserveUnrecognized) {
        // Once for all entries, which are then kept as what the directory says they are.
        EntryKind ignoredKind{};
        FileIdentity ignoredIdentity;
        top().lookUpError = top().directory.lookUp(".", ignoredKind, ignoredIdentity);
    }
}

void DeletionWalk::leave() {
    DirectoryFrame& frame = top();
    if (!stack_.ensureParentOpen()) {
        stack_.pop();
        // The folder around it is out of reach, with whatever it still holds.
        recordFailure(stack_.pathOfTop(), ESTALE);
        top().left = true;
        top().next = top().listing.size();
        top().listingComplete = true;
        return;
    }
    if (frame.left) {
        stack_.pop();
        top().left = true;
        return;
    }
    const std::string name = stack_.nameOfTop();
    const int error = stack_.parentOfTop().directory.removeDirectory(name.c_str());
    if (isNotEmpty(error) && frame.directory && frame.rescans < rescanLimit &&
        frame.directory.rewind() == 0) {
        ++frame.rescans;
        frame.listingComplete = false;
        return;
    }
    stack_.pop();
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

/// Leaves the folder `name` of the top directory to another thread, if one has nothing to do.
bool DeletionWalk::handOver(const char* name) {
    if (!handedOver_.areWanted(handledEntries_)) {
        return false;
    }
    std::string standardizedPath = standardizedPath_;
    standardizedPath.append(stack_.pathBelowItem()).append("/").append(name);
    return handedOver_.handOver(name, std::move(standardizedPath));
}

bool DeletionWalk::mayRemove(const char* name) const {
    return !rules_.mayRemove || rules_.mayRemove(stack_.pathOf(name));
}

void DeletionWalk::recordRemoved(const char* name) {
    DeletionRecord& record = record_.current();
    ++record.removedCount;
    if (rules_.shield != nullptr) {
        record.report.removed.push_back(stack_.pathOf(name));
    }
}

void DeletionWalk::recordPreserved(const char* name) {
    record_.current().report.preserved.push_back(stack_.pathOf(name));
    top().left = true;
}

void DeletionWalk::fail(const char* name, int error) {
    recordFailure(stack_.pathOf(name), error);
    top().left = true;
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
