#pragma once

#include "platform/DirectoryStack.h"
#include "platform/EntryStatus.h"

#include <cstddef>

namespace zentrill {

/// Finds out that somebody moved a folder out of the item while a walk was inside of it: the kernel, which
/// holds the deletion to the item, refuses every removal in there from then on. The folder is left as it is.
class MovedFolder {
public:
    explicit MovedFolder(const DirectoryStack& stack) : stack_(stack) {}

    /// The folder that the whole deletion removes, and out of which others may be moved; without one, nothing
    /// is noticed.
    void setItem(const FileIdentity& item) { item_ = item; }

    [[nodiscard]] const FileIdentity& item() const { return item_; }

    /// After a removal in the top directory was refused for want of permission: whether it is because that
    /// lies in a moved folder.
    [[nodiscard]] bool notice();

    /// Whether the top directory is the moved folder or lies in it.
    [[nodiscard]] bool holdsTop() const { return depth_ != 0 && stack_.depth() >= depth_; }

    [[nodiscard]] bool isTop() const { return stack_.depth() == depth_; }

    /// Whether it is a folder that a walk on another thread is inside of, and this one's base is in it.
    [[nodiscard]] bool isAboveWalk() const { return depth_ == 1; }

    /// Once the walk is outside of it again.
    void forget() { depth_ = 0; }

private:
    const DirectoryStack& stack_;
    FileIdentity item_;
    /// In the stack; 0 if there is none.
    std::size_t depth_ = 0;
};

} // namespace zentrill
