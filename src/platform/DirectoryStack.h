#pragma once

#include "platform/DirectoryHandle.h"
#include "platform/DirectoryListing.h"
#include "platform/EntryStatus.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zentrill {

/// The position of a walk through a tree: the open directories from the base, where it begins, down to the
/// current one, and the entries that each has left. It navigates and changes nothing.
///
///     DirectoryStack stack(std::move(base));
///     while (true) {
///         if (const auto entry = stack.nextEntry()) {
///             look(stack.directory(), entry->name);
///             if (entry->kind == EntryKind::directory) {
///                 (void)stack.enter(entry->name);      // An error means: still in the same directory.
///             }
///         } else if (stack.depth() == 1) {
///             break;
///         } else {
///             (void)stack.leave();
///         }
///     }
///
/// The tree may be of any depth and may change at any time. A directory is opened by its name in the open one
/// around it and never through a link. Only some directories stay open; the others are reached again by "..",
/// or by their names from an open one above, and count as reached only if they are the very same directories.
///
/// Calls that can fail return the system's error number, 0 for success.
class DirectoryStack {
public:
    /// Directories kept open at once besides the base: enough for an ordinary tree to be climbed without
    /// "..", few enough for a process that may open 64 files.
    static constexpr std::size_t usualOpenDirectories = 16;

    /// `base` is never closed by the stack. It is listed only if `nextEntry` is called there.
    explicit DirectoryStack(DirectoryHandle base, Mounts mounts = Mounts::refuse,
                            std::size_t openDirectories = usualOpenDirectories);

    struct Entry {
        /// Ends with a NUL. Valid until the next call of `nextEntry` in the same directory, or until that is
        /// left.
        const char* name;
        /// As the directory tells it, so it may be `unknown`.
        EntryKind kind;
    };

    /// 1 in the base.
    [[nodiscard]] std::size_t depth() const noexcept { return depth_; }

    /// The top directory, where the walk is. It is closed only if it is out of reach, see `leave`.
    [[nodiscard]] const DirectoryHandle& directory() const { return top().directory; }

    /// The top directory's name in the one around it; not for the base.
    [[nodiscard]] std::string nameOfTop() const { return nameOf(top()); }

    /// The names that lead from the base to the top directory, slashes between them; empty in the base.
    [[nodiscard]] std::string_view relativePath() const noexcept { return path_; }

    /// The top directory's next entry in the order of the file system, nothing at the end.
    [[nodiscard]] std::optional<Entry> nextEntry();

    /// Why the listing ended before the top directory did, 0 if it did not. Each error is told once.
    [[nodiscard]] int takeListingError();

    /// Makes the next `nextEntry` begin again with the first entry of the top directory.
    [[nodiscard]] int rewind();

    /// Enters the folder `name` of the top directory; if there are no descriptors left, an older directory is
    /// closed for it. The errors are those of `DirectoryHandle::openChild`; after an error the walk stays
    /// where it is.
    [[nodiscard]] int enter(const char* name);

    /// Goes back to the directory around the top one. False if somebody moved directories and it is out of
    /// reach: then it is the top one, but closed and without further entries. Not to be called in the base.
    bool leave();

    /// Makes `directoryAround` usable without leaving the top one; false if it is out of reach.
    [[nodiscard]] bool openDirectoryAround();

    /// The open directory around the top one, once `openDirectoryAround` succeeded.
    [[nodiscard]] const DirectoryHandle& directoryAround() const { return frames_[depth_ - 2].directory; }

    /// The depth of the directory around the top one that somebody moved out of the folder `root`; 1 if it is
    /// the base or one above. Nothing if ".." still leads from the top directory to `root`, or if that cannot
    /// be found out.
    [[nodiscard]] std::optional<std::size_t> depthMovedOutOf(const FileIdentity& root) const;

private:
    struct Frame {
        DirectoryHandle directory;
        /// Still known when `directory` was closed to save descriptors.
        FileIdentity identity;
        DirectoryListing listing;
        std::size_t next = 0;
        bool listingComplete = false;
        int listingError = 0;
        /// Where the directory's name begins and ends in `path_`.
        std::size_t nameOffset = 0;
        std::size_t pathLength = 0;
    };

    [[nodiscard]] Frame& top() { return frames_[depth_ - 1]; }

    [[nodiscard]] const Frame& top() const { return frames_[depth_ - 1]; }

    void push(const char* name, DirectoryHandle directory);
    [[nodiscard]] bool closeOldest();
    [[nodiscard]] bool reopenFromAbove(std::size_t index);
    [[nodiscard]] std::string nameOf(const Frame& frame) const;

    Mounts mounts_;
    std::size_t openDirectories_;
    std::string path_;
    /// The first one is the base. Only the first `depth_` are in use; the others keep their memory for the
    /// next directory.
    std::vector<Frame> frames_;
    std::size_t depth_ = 1;
    /// The first frame, the base aside, whose directory may be open.
    std::size_t oldestOpen_ = 1;
};

} // namespace zentrill
