#pragma once

#include "deletion/CredentialShield.h"
#include "deletion/DeletionConcurrency.h"
#include "deletion/DeletionCrew.h"
#include "deletion/DeletionReport.h"
#include "deletion/DirectoryStack.h"
#include "platform/DirectoryHandle.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zentrill {

/// Removes one item with everything in it, holding on to open directories so that no swapped folder or link
/// can lead it elsewhere. It needs neither stack nor descriptors in proportion to the tree's depth, nor
/// memory in proportion to its size beyond what is reported.
///
/// In a large tree folders are left to other threads as soon as these have nothing to do. Each of them is
/// walked in the same way from its own open parent, and is done before the folder around it is removed.
class DeletionWalk {
public:
    struct Rules {
        /// Keeps what it protects, and makes the walk list every removal; null removes everything.
        const CredentialShield* shield = nullptr;
        /// With a shield: keeps everything that is no directory.
        bool preserveUnrecognized = false;
        /// When set, an item that it refuses stays unmentioned, with its contents and the folders above it.
        /// Called from the thread of `run` alone: with it the walk takes no others.
        std::function<bool(const std::string& path)> mayRemove;
        DeletionConcurrency concurrency;
    };

    struct Failure {
        std::string path;
        int error = 0;
    };

    struct Outcome {
        /// With a shield, every removal, kept item and failure; otherwise empty.
        DeletionReport report;
        /// Which removal of the whole deletion each of `report.removed` was, once there are several threads.
        std::vector<std::size_t> removalNumbers;
        std::size_t removedCount = 0;
        std::optional<Failure> firstFailure;
        /// Whether the item itself is still there.
        bool left = false;
    };

    /// `path` is the item as reports are to call it, `standardizedPath` the same standardized; `parent` is
    /// the open folder that holds it. `rules` outlive the walk.
    DeletionWalk(const Rules& rules, std::string path, std::string standardizedPath, DirectoryHandle parent);

    /// Removes the item; once for each object.
    [[nodiscard]] Outcome run();

private:
    friend class DeletionSubtree;

    enum class Step : std::uint8_t { done, kindChanged };

    /// Removes the item, of which nothing but its contents may be protected.
    [[nodiscard]] Outcome runUnprotected(EntryKind kind);

    [[nodiscard]] DirectoryFrame& top() { return stack_.top(); }

    /// The next unhandled entry's index in the top frame, reading on where needed; nothing at the end.
    [[nodiscard]] std::optional<std::size_t> nextEntry();
    void handle(const char* name, EntryKind kind);
    void remove(const char* name, EntryKind kind);
    [[nodiscard]] Step removeLeaf(const char* name);
    [[nodiscard]] Step enter(const char* name);
    void push(const char* name, DirectoryHandle directory);
    void leave();

    [[nodiscard]] bool wantsHelp();
    [[nodiscard]] bool handOver(const char* name);
    [[nodiscard]] std::shared_ptr<DeletionSubtree> takeBack();
    void absorbFinished();
    void absorb(DeletionSubtree& subtree);
    void putRemovalsInOrder();

    [[nodiscard]] bool mayRemove(const char* name) const;
    void recordRemoved(const char* name);
    void recordPreserved(const char* name);
    void fail(const char* name, int error);
    void recordFailure(std::string path, int error);

    const Rules& rules_;
    /// The item's path in the form that the shield compares.
    std::string standardizedPath_;
    DirectoryStack stack_;
    Outcome outcome_;
    std::size_t handledEntries_ = 0;
    /// Set in the walk that began it all.
    std::unique_ptr<DeletionCrew> ownCrew_;
    DeletionCrew* crew_ = nullptr;
    /// Whether this thread may take over other work while it waits.
    bool mayHelp_ = true;
};

} // namespace zentrill
