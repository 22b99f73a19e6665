#include "deletion/DirectoryStack.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <utility>

namespace zentrill {

namespace {

/// Directories kept open at once: enough that an ordinary tree is never climbed by "..", few enough for a
/// process that may open 64 files.
constexpr std::size_t openDirectoryLimit = 16;

bool isOutOfDescriptors(int error) {
    return error == EMFILE || error == ENFILE;
}

} // namespace

DirectoryStack::DirectoryStack(std::string itemPath, std::string itemName, DirectoryHandle parent)
    : itemPath_(std::move(itemPath)), itemName_(std::move(itemName)) {
    // A trailing slash of the caller's is not doubled in front of what lies below.
    itemPathLength_ = itemPath_.find_last_not_of('/') + 1;
    frames_.resize(1);
    frames_[0].directory = std::move(parent);
    frames_[0].listingComplete = true;
}

int DirectoryStack::openChild(const char* name, DirectoryHandle& opened) {
    int error = top().directory.openChild(name, opened);
    while (isOutOfDescriptors(error) && releaseOldest()) {
        error = top().directory.openChild(name, opened);
    }
    return error;
}

void DirectoryStack::push(const char* name, DirectoryHandle directory) {
    const std::size_t nameOffset = path_.size() + 1;
    if (depth_ == 1) {
        path_.assign(itemPath_, 0, itemPathLength_);
    } else {
        path_.append("/").append(name); // `name` lies in a listing, never in `path_`.
    }
    if (depth_ == frames_.size()) {
        frames_.emplace_back();
    }
    DirectoryFrame& frame = frames_[depth_++];
    frame.identity = directory.identity();
    frame.directory = std::move(directory);
    frame.listing.clear();
    frame.next = 0;
    frame.listingComplete = false;
    frame.listingError = 0;
    frame.left = false;
    frame.lookUpError = 0;
    frame.nameOffset = nameOffset;
    frame.pathLength = path_.size();
    frame.rescans = 0;
    frame.explicitNames.clear();
    if (depth_ - oldestOpen_ > openDirectoryLimit) {
        (void)releaseOldest();
    }
}

void DirectoryStack::pop() {
    top().directory.close();
    --depth_;
    path_.resize(top().pathLength);
    oldestOpen_ = std::max<std::size_t>(1, std::min(oldestOpen_, depth_ - 1));
}

/// Gives up the oldest open directory other than the top one; it is reached again by "..".
bool DirectoryStack::releaseOldest() {
    while (oldestOpen_ + 1 < depth_) {
        DirectoryFrame& frame = frames_[oldestOpen_++];
        if (!frame.directory) {
            continue;
        }
        // A reopened directory is read from its start, where kept entries would be met twice.
        if (!frame.listingComplete) {
            frame.listingError = frame.directory.readEntries(frame.listing, SIZE_MAX, frame.listingComplete);
            frame.listingComplete = true;
        }
        frame.directory.close();
        return true;
    }
    return false;
}

bool DirectoryStack::ensureParentOpen() {
    DirectoryFrame& parent = parentOfTop();
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

bool DirectoryStack::reopenFromAbove(std::size_t index) {
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

std::string DirectoryStack::pathOf(const char* name) const {
    if (depth_ == 1) {
        return itemPath_;
    }
    const std::string_view last(name);
    std::string path;
    path.reserve(path_.size() + 1 + last.size());
    path.append(path_).append(1, '/').append(last);
    return path;
}

std::string DirectoryStack::pathOfTop() const {
    return depth_ == 2 ? itemPath_ : path_;
}

std::string DirectoryStack::nameOf(const DirectoryFrame& frame) const {
    if (&frame == &frames_[1]) {
        return itemName_;
    }
    return path_.substr(frame.nameOffset, frame.pathLength - frame.nameOffset);
}

} // namespace zentrill
