#pragma once

#include "platform/DirectoryHandle.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zentrill {

/// A directory that a walk is inside of, and what it has still to do there.
struct DirectoryFrame {
    DirectoryHandle directory;
    /// Remains when `directory` was closed to save descriptors.
    FileIdentity identity;
    DirectoryListing listing;
    std::size_t next = 0;
    bool listingComplete = false;
    /// Why `listing` ends before the directory does; 0 if it does not.
    int listingError = 0;
    /// Something inside stays, so the directory does too.
    bool left = false;
    /// Why no entry in here can be looked up; 0 if they can.
    int lookUpError = 0;
    /// Where this directory's name begins and ends in the stack's path.
    std::size_t nameOffset = 0;
    std::size_t pathLength = 0;
    int rescans = 0;
    std::vector<std::string_view> explicitNames;
};

/// The directories from an item's parent down to where a walk is, of any depth, with a bounded number of them
/// open: the others are reached again by "..", and only if that leads to the very same directory.
class DirectoryStack {
public:
    /// `itemPath` is the item as reports are to call it, `itemName` its name in `parent`.
    DirectoryStack(std::string itemPath, std::string itemName, DirectoryHandle parent);

    /// 1 in the item's parent.
    [[nodiscard]] std::size_t depth() const noexcept { return depth_; }

    [[nodiscard]] DirectoryFrame& top() { return frames_[depth_ - 1]; }

    [[nodiscard]] const DirectoryFrame& top() const { return frames_[depth_ - 1]; }

    /// The folder around the top one; `ensureParentOpen` makes it usable.
    [[nodiscard]] DirectoryFrame& parentOfTop() { return frames_[depth_ - 2]; }

    /// Opens the folder `name` of the top directory, at the cost of an older open one where descriptors are
    /// out. The errors are those of `DirectoryHandle::openChild`.
    [[nodiscard]] int openChild(const char* name, DirectoryHandle& opened);

    /// Goes into the folder `name` of the top directory, just opened.
    void push(const char* name, DirectoryHandle directory);

    void pop();

    /// Makes sure that the folder around the top directory is open: by "..", or, if somebody moved the
    /// directory away from under it, from the nearest open folder above.
    [[nodiscard]] bool ensureParentOpen();

    /// The reported path of the entry `name` in the top directory.
    [[nodiscard]] std::string pathOf(const char* name) const;

    /// The reported path of the top directory.
    [[nodiscard]] std::string pathOfTop() const;

    /// The top directory's name in its parent.
    [[nodiscard]] std::string nameOfTop() const { return nameOf(top()); }

    /// What leads from the item to the top directory: empty, or a slash and names.
    [[nodiscard]] std::string_view pathBelowItem() const {
        return std::string_view(path_).substr(itemPathLength_);
    }

private:
    [[nodiscard]] bool releaseOldest();
    [[nodiscard]] bool reopenFromAbove(std::size_t index);
    [[nodiscard]] std::string nameOf(const DirectoryFrame& frame) const;

    std::string itemPath_;
    std::string itemName_;
    std::size_t itemPathLength_ = 0;
    /// The reported path of the top directory, without the slash that the item's may end in.
    std::string path_;
    /// The first one is the item's parent. Only the first `depth_` are in use; the others keep their memory
    /// for the next directory.
    std::vector<DirectoryFrame> frames_;
    std::size_t depth_ = 1;
    /// The first frame, the parent aside, whose directory may be open.
    std::size_t oldestOpen_ = 1;
};

} // namespace zentrill
