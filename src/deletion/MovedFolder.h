#pragma once

#include "platform/DirectoryStack.h"
#include "platform/EntryStatus.h"

#include <cstddef>

namespace zentrill {

/// Notices that somebody moved a folder out of the item while a walk was inside it: from then on the kernel,
/// which holds the deletion to the item, refuses every removal in there. The folder is left as it is.
class MovedFolder {
public:
    explicit MovedFolder(const DirectoryStack& stack) : stack_(stack) {}

    /// The item of the whole deletion, out of which folders may be moved. Without one nothing is noticed.
    void setItem(const FileIdentity& item) { item_ = item; }

    [[nodiscard]] const FileIdentity& item() const { return item_; }

    /// To be asked after a removal in the top directory was not permitted: whether that is because the
    /// directory lies in a moved folder.
    [[nodiscard]] bool notice();

    /// Whether the top directory is the moved folder or lies in it.
    [[nodiscard]] bool holdsTop() const { return depth_ != 0 && stack_.depth() >= depth_; }

    [[nodiscard]] bool isTop() const { return stack_.depth() == depth_; }

    /// Whether the moved folder is around this walk's base, and thus one of a walk on another thread.
    [[nodiscard]] bool isAboveWalk() const { return depth_ == 1; }

    /// To be called when the walk has left the moved folder.
    void forget() { depth_ = 0; }

private:
    const DirectoryStack& stack_;
    FileIdentity item_;
    /// The moved folder's depth in the stack; 0 if there is none.
    std::size_t depth_ = 0;
};

} // namespace zentrill
