#include "deletion/DeletionWalk.h"

#include "platform/Paths.h"
#include "platform/SystemError.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <utility>

namespace zentrill {

namespace {

/// Directories kept open at once: enough that an ordinary tree is never climbed by "..", few enough for a
/// process that may open 64 files.
constexpr std::size_t openDirectoryLimit = 16;

/// Names read from a directory before its entries are handled, in bytes.
constexpr std::size_t listingBytes = std::size_t{1} << 20;

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

bool isOutOfDescriptors(int error) {
    return error == EMFILE || error == ENFILE;
}

} // namespace

DeletionWalk::DeletionWalk(Rules rules, std::string path, const std::string& standardizedPath,
                           DirectoryHandle parent)
    : rules_(std::move(rules)),
      itemPath_(std::move(path)),
      itemName_(paths::lastComponent(standardizedPath)),
      standardizedPath_(standardizedPath) {
    // A trailing slash of the caller's is not doubled in front of what lies below.
    itemPathLength_ = itemPath_.find_last_not_of('/') + 1;
    frames_.resize(1);
    depth_ = 1;
    frames_[0].directory = std::move(parent);
    frames_[0].listingComplete = true;
}

DeletionWalk::Outcome DeletionWalk::run() {
    if (rules_.shield != nullptr && rules_.shield->isProtected(standardizedPath_)) {
        recordPreserved(itemName_.c_str());
    } else {
        handle(itemName_.c_str(), EntryKind::unknown);
        while (depth_ > 1) {
            if (const std::optional<std::size_t> index = nextEntry()) {
                handle(top().listing.name(*index), top().listing.kind(*index));
            } else {
                leave();
            }
        }
    }
    outcome_.left = frames_[0].left;
    return std::move(outcome_);
}

std::optional<std::size_t> DeletionWalk::nextEntry() {
    Frame& frame = top();
    while (frame.next == frame.listing.size()) {
        if (frame.listingComplete) {
            return std::nullopt;
        }
        frame.listing.clear();
        frame.next = 0;
        const int error = frame.directory.readEntries(frame.listing, listingBytes, frame.listingComplete);
        if (error == 0) {
            continue;
        }
        frame.listingComplete = true;
        // A directory that somebody removed meanwhile has no entries; removing it will tell.
        if (error != ENOENT) {
            recordFailure(pathOf(top()), error);
            frame.left = true;
        }
    }
    return frame.next++;
}

void DeletionWalk::handle(const char* name, EntryKind kind) {
    if (depth_ > 1 && rules_.shield != nullptr && rules_.shield->isProtectedName(name, top().explicitNames)) {
        recordPreserved(name);
        return;
    }
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
        recordPreserved(name);
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
    int error = openChild(name, directory);
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
    if (error == EXDEV) {
        error = EBUSY; // What the system says of removing a mount point.
    } else {
        // One that must not be read may still be empty.
        const int removal = top().directory.removeDirectory(name);
        if (removal == 0) {
            recordRemoved(name);
            return Step::done;
        }
        if (removal == ENOENT) {
            return Step::done;
        }
        if (removal == ENOTDIR) {
            return Step::kindChanged;
        }
        if (!isNotEmpty(removal)) {
            error = removal;
        }
    }
    fail(name, error);
    return Step::done;
}

void DeletionWalk::push(const char* name, DirectoryHandle directory) {
    const std::size_t nameOffset = path_.size() + 1;
    if (depth_ == 1) {
        path_.assign(itemPath_, 0, itemPathLength_);
    } else {
        path_.append("/").append(name); // `name` lies in a listing, never in `path_`.
    }
    if (depth_ == frames_.size()) {
        frames_.emplace_back();
    }
    Frame& frame = frames_[depth_++];
    frame.identity = directory.identity();
    frame.directory = std::move(directory);
    frame.listing.clear();
    frame.next = 0;
    frame.listingComplete = false;
    frame.left = false;
    frame.nameOffset = nameOffset;
    frame.pathLength = path_.size();
    frame.rescans = 0;
    frame.explicitNames.clear();
    if (rules_.shield != nullptr && rules_.shield->hasExplicitCredentials()) {
        frame.explicitNames = rules_.shield->explicitNames(standardizedPath_ + path_.substr(itemPathLength_));
    }
    if (depth_ - oldestOpen_ > openDirectoryLimit) {
        (void)releaseOldest();
    }
}

void DeletionWalk::leave() {
    Frame& frame = top();
    if (!ensureParentOpen()) {
        pop();
        // The folder around it is out of reach, with whatever it still holds.
        recordFailure(pathOf(top()), ESTALE);
        top().left = true;
        top().next = top().listing.size();
        top().listingComplete = true;
        return;
    }
    if (frame.left) {
        pop();
        top().left = true;
        return;
    }
    const std::string name = nameOf(frame);
    const int error = frames_[depth_ - 2].directory.removeDirectory(name.c_str());
    if (isNotEmpty(error) && frame.directory && frame.rescans < rescanLimit &&
        frame.directory.rewind() == 0) {
        ++frame.rescans;
        frame.listingComplete = false;
        return;
    }
    pop();
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

void DeletionWalk::pop() {
    top().directory.close();
    --depth_;
    path_.resize(top().pathLength);
    oldestOpen_ = std::max<std::size_t>(1, std::min(oldestOpen_, depth_ - 1));
}

int DeletionWalk::openChild(const char* name, DirectoryHandle& opened) {
    int error = top().directory.openChild(name, opened);
    while (isOutOfDescriptors(error) && releaseOldest()) {
        error = top().directory.openChild(name, opened);
    }
    return error;
}

/// Gives up the oldest open directory other than the top one; it is reached again by "..".
bool DeletionWalk::releaseOldest() {
    while (oldestOpen_ + 1 < depth_) {
        Frame& frame = frames_[oldestOpen_++];
        if (!frame.directory) {
            continue;
        }
        // A reopened directory is read from its start, where kept entries would be met twice.
        if (!frame.listingComplete) {
            const int error = frame.directory.readEntries(frame.listing, SIZE_MAX, frame.listingComplete);
            if (error != 0) {
                frame.listingComplete = true;
                frame.left = true;
                recordFailure(pathOf(frame), error);
            }
        }
        frame.directory.close();
        return true;
    }
    return false;
}

/// Makes sure that the folder around the top frame's directory is open: by "..", or, if somebody moved the
/// directory away from under it, from the nearest open folder above.
bool DeletionWalk::ensureParentOpen() {
    Frame& parent = frames_[depth_ - 2];
    if (parent.directory) {
        return true;
    }
    DirectoryHandle opened;
    if (top().directory && top().directory.openParent(opened) == 0 && opened.identity() == parent.identity) {
        parent.directory = std::move(opened);
        oldestOpen_ = std::min(oldestOpen_, depth_ - 2);
        return true;
    }
    return reopenFromAbove(depth_ - 2);
}

bool DeletionWalk::reopenFromAbove(std::size_t index) {
    std::size_t open = index;
    while (open > 0 && !frames_[open].directory) {
        --open;
    }
    DirectoryHandle current;
    for (std::size_t i = open + 1; i <= index; ++i) {
        const DirectoryHandle& above = i == open + 1 ? frames_[open].directory : current;
        DirectoryHandle next;
        if (above.openChild(nameOf(frames_[i]).c_str(), next) != 0 ||
            next.identity() != frames_[i].identity) {
            return false;
        }
        current = std::move(next);
    }
    frames_[index].directory = std::move(current);
    oldestOpen_ = std::min(oldestOpen_, index);
    return true;
}

bool DeletionWalk::mayRemove(const char* name) const {
    return !rules_.mayRemove || rules_.mayRemove(pathOf(name));
}

std::string DeletionWalk::pathOf(const char* name) const {
    if (depth_ == 1) {
        return itemPath_;
    }
    const std::string_view last(name);
    std::string path;
    path.reserve(path_.size() + 1 + last.size());
    path.append(path_).append(1, '/').append(last);
    return path;
}

std::string DeletionWalk::pathOf(const Frame& frame) const {
    return &frame == &frames_[1] ? itemPath_ : path_.substr(0, frame.pathLength);
}

std::string DeletionWalk::nameOf(const Frame& frame) const {
    if (&frame == &frames_[1]) {
        return itemName_;
    }
    return path_.substr(frame.nameOffset, frame.pathLength - frame.nameOffset);
}

void DeletionWalk::recordRemoved(const char* name) {
    ++outcome_.removedCount;
    if (rules_.shield != nullptr) {
        outcome_.report.removed.push_back(pathOf(name));
    }
}

void DeletionWalk::recordPreserved(const char* name) {
    outcome_.report.preserved.push_back(pathOf(name));
    top().left = true;
}

void DeletionWalk::fail(const char* name, int error) {
    recordFailure(pathOf(name), error);
    top().left = true;
}

void DeletionWalk::recordFailure(std::string path, int error) {
    if (rules_.shield != nullptr) {
        outcome_.report.failures.push_back(path + ": " + systemDescription(error));
    }
    if (!outcome_.firstFailure) {
        outcome_.firstFailure = Failure{.path = std::move(path), .error = error};
    }
}

} // namespace zentrill
