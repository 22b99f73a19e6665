#pragma once

#include "deletion/CredentialShield.h"
#include "deletion/DeletionReport.h"
#include "platform/DirectoryHandle.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zentrill {

/// Removes one item with everything in it, holding on to open directories so that no swapped folder or link
/// can lead it elsewhere. It needs neither stack nor descriptors in proportion to the tree's depth, nor
/// memory in proportion to its size beyond what is reported.
class DeletionWalk {
public:
    struct Rules {
        /// Keeps what it protects, and makes the walk list every removal; null removes everything.
        const CredentialShield* shield = nullptr;
        /// With a shield: keeps everything that is no directory.
        bool preserveUnrecognized = false;
        /// When set, an item that it refuses stays unmentioned, with its contents and the folders above it.
        std::function<bool(const std::string& path)> mayRemove;
    };

    struct Failure {
        std::string path;
        int error = 0;
    };

    struct Outcome {
        /// With a shield, every removal, kept item and failure; otherwise empty.
        DeletionReport report;
        std::size_t removedCount = 0;
        std::optional<Failure> firstFailure;
        /// Whether the item itself is still there.
        bool left = false;
    };

    /// `path` is the item as reports are to call it, `standardizedPath` the same standardized; `parent` is
    /// the open folder that holds it.
    DeletionWalk(Rules rules, std::string path, const std::string& standardizedPath, DirectoryHandle parent);

    /// Removes the item; once for each object.
    [[nodiscard]] Outcome run();

private:
    /// A directory that the walk is inside of, and what it has still to do there.
    struct Frame {
        DirectoryHandle directory;
        /// Remains when `directory` was closed to save descriptors.
        FileIdentity identity;
        DirectoryListing listing;
        std::size_t next = 0;
        bool listingComplete = false;
        /// Something inside stays, so the directory does too.
        bool left = false;
        /// Where this directory's name begins and ends in `path_`.
        std::size_t nameOffset = 0;
        std::size_t pathLength = 0;
        int rescans = 0;
        std::vector<std::string_view> explicitNames;
    };

    enum class Step : std::uint8_t { done, kindChanged };

    [[nodiscard]] Frame& top() { return frames_[depth_ - 1]; }

    /// The next unhandled entry's index in the top frame, reading on where needed; nothing at the end.
    [[nodiscard]] std::optional<std::size_t> nextEntry();
    void handle(const char* name, EntryKind kind);
    [[nodiscard]] Step removeLeaf(const char* name);
    [[nodiscard]] Step enter(const char* name);
    void push(const char* name, DirectoryHandle directory);
    void leave();
    void pop();

    [[nodiscard]] int openChild(const char* name, DirectoryHandle& opened);
    [[nodiscard]] bool releaseOldest();
    [[nodiscard]] bool ensureParentOpen();
    [[nodiscard]] bool reopenFromAbove(std::size_t index);

    [[nodiscard]] bool mayRemove(const char* name) const;
    [[nodiscard]] std::string pathOf(const char* name) const;
    [[nodiscard]] std::string pathOf(const Frame& frame) const;
    [[nodiscard]] std::string nameOf(const Frame& frame) const;
    void recordRemoved(const char* name);
    void recordPreserved(const char* name);
    void fail(const char* name, int error);
    void recordFailure(std::string path, int error);

    Rules rules_;
    std::string itemPath_;
    std::string itemName_;
    /// The item's path in the form that the shield compares.
    std::string standardizedPath_;
    /// The reported path of the top frame's directory.
    std::string path_;
    std::size_t itemPathLength_ = 0;
    /// The first one is the item's parent. Only the first `depth_` are in use; the others keep their memory
    /// for the next directory.
    std::vector<Frame> frames_;
    std::size_t depth_ = 0;
    /// The first frame, the parent aside, whose directory may be open.
    std::size_t oldestOpen_ = 1;
    Outcome outcome_;
};

} // namespace zentrill
