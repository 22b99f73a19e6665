#include "platform/DirectoryStack.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <utility>

namespace zentrill {

namespace {

/// How many bytes of names are read before the entries are handed out: few enough that what the kernel has
/// just read is still in the processor's cache when the walk gets there. With a megabyte at a time a deletion
/// takes 2 % longer.
constexpr std::size_t listingBytes = std::size_t{16} * 1024;

bool isOutOfDescriptors(int error) {
    return error == EMFILE || error == ENFILE;
}

} // namespace

DirectoryStack::DirectoryStack(DirectoryHandle base, Mounts mounts, std::size_t openDirectories)
    : mounts_(mounts), openDirectories_(openDirectories), frames_(1) {
    frames_[0].identity = base.identity();
    frames_[0].directory = std::move(base);
}

std::optional<DirectoryStack::Entry> DirectoryStack::nextEntry() {
    Frame& frame = top();
    while (frame.next == frame.listing.size()) {
        if (frame.listingComplete) {
            return std::nullopt;
        }
        frame.listing.clear();
        frame.next = 0;
        frame.listingError = frame.directory.readEntries(frame.listing, listingBytes, frame.listingComplete);
        frame.listingComplete = frame.listingComplete || frame.listingError != 0;
    }
    const std::size_t index = frame.next++;
    return Entry{.name = frame.listing.name(index), .kind = frame.listing.kind(index)};
}

int DirectoryStack::takeListingError() {
    return std::exchange(top().listingError, 0);
}

int DirectoryStack::rewind() {
    Frame& frame = top();
    if (!frame.directory) {
        return ESTALE;
    }
    const int error = frame.directory.rewind();
    if (error == 0) {
        frame.listing.clear();
        frame.next = 0;
        frame.listingComplete = false;
        frame.listingError = 0;
    }
    return error;
}

int DirectoryStack::enter(const char* name) {
    DirectoryHandle opened;
    int error = directory().openChild(name, mounts_, opened);
    while (isOutOfDescriptors(error) && closeOldest()) {
        error = directory().openChild(name, mounts_, opened);
    }
    if (error == 0) {
        push(name, std::move(opened));
    }
    return error;
}

void DirectoryStack::push(const char* name, DirectoryHandle directory) {
    // `name` lies in a listing or with the caller, never in `path_`.
    if (depth_ > 1) {
        path_.append("/");
    }
    const std::size_t nameOffset = path_.size();
    path_.append(name);
    if (depth_ == frames_.size()) {
        frames_.emplace_back();
    }
    Frame& frame = frames_[depth_++];
    frame.identity = directory.identity();
    frame.directory = std::move(directory);
    frame.listing.clear();
    frame.next = 0;
    frame.listingComplete = false;
    frame.listingError = 0;
    frame.nameOffset = nameOffset;
    frame.pathLength = path_.size();
    if (depth_ - oldestOpen_ > openDirectories_) {
        (void)closeOldest();
    }
}

bool DirectoryStack::leave() {
    const bool reached = openDirectoryAround();
    top().directory.close();
    --depth_;
    path_.resize(top().pathLength);
    oldestOpen_ = std::max<std::size_t>(1, std::min(oldestOpen_, depth_ - 1));
    if (!reached) {
        top().next = top().listing.size();
        top().listingComplete = true;
    }
    return reached;
}

/// Closes the oldest open directory other than the top one; it is reached again by "..".
bool DirectoryStack::closeOldest() {
    while (oldestOpen_ + 1 < depth_) {
        Frame& frame = frames_[oldestOpen_++];
        if (!frame.directory) {
            continue;
        }
        // A reopened directory is read from its start, and the entries that were left would come twice.
        if (!frame.listingComplete) {
            frame.listingError = frame.directory.readEntries(frame.listing, SIZE_MAX, frame.listingComplete);
            frame.listingComplete = true;
        }
        frame.directory.close();
        return true;
    }
    return false;
}

bool DirectoryStack::openDirectoryAround() {
    Frame& around = frames_[depth_ - 2];
    if (around.directory) {
        return true;
    }
    DirectoryHandle opened;
    if (directory() && directory().openParent(opened) == 0 && opened.identity() == around.identity) {
        around.directory = std::move(opened);
        oldestOpen_ = std::min(oldestOpen_, depth_ - 2);
        return true;
    }
    return reopenFromAbove(depth_ - 2);
}

/// ".." leads elsewhere when somebody moved the directory away from under the one around it.
bool DirectoryStack::reopenFromAbove(std::size_t index) {
    std::size_t open = index;
    while (open > 0 && !frames_[open].directory) {
        --open;
    }
    DirectoryHandle current;
    for (std::size_t i = open + 1; i <= index; ++i) {
        const DirectoryHandle& above = i == open + 1 ? frames_[open].directory : current;
        DirectoryHandle next;
        if (above.openChild(nameOf(frames_[i]).c_str(), mounts_, next) != 0 ||
            next.identity() != frames_[i].identity) {
            return false;
        }
        current = std::move(next);
    }
    frames_[index].directory = std::move(current);
    oldestOpen_ = std::min(oldestOpen_, index);
    return true;
}

std::optional<std::size_t> DirectoryStack::depthMovedOutOf(const FileIdentity& root) const {
    FileIdentity identity = top().identity;
    std::size_t depth = depth_;
    std::optional<std::size_t> moved;
    DirectoryHandle current;
    while (identity != root) {
        DirectoryHandle above;
        if ((current ? current : directory()).openForSearch("..", above) != 0) {
            return std::nullopt;
        }
        if (above.identity() == identity) {
            return moved.value_or(1); // The root of the file system.
        }
        if (!moved) {
            if (depth > 1 && above.identity() == frames_[depth - 2].identity) {
                --depth;
            } else {
                moved = depth;
            }
        }
        identity = above.identity();
        current = std::move(above);
    }
    return std::nullopt;
}

std::string DirectoryStack::nameOf(const Frame& frame) const {
    return path_.substr(frame.nameOffset, frame.pathLength - frame.nameOffset);
}

} // namespace zentrill
