#pragma once

#include "deletion/DeletionCrew.h"
#include "deletion/ItemPaths.h"
#include "platform/DirectoryHandle.h"
#include "platform/EntryStatus.h"

#include <functional>
#include <utility>

namespace zentrill {

/// What another thread has to know of a folder that a walk leaves to it.
struct SubtreeTask {
    /// A separate handle on the folder that holds it.
    DirectoryHandle parent;
    ItemPaths paths;
    /// The item of the whole deletion.
    FileIdentity item;
};

/// A folder that a walk leaves to another thread, which walks through it with an `Outcome`.
template <typename Outcome>
class DeletionSubtree : public DeletionJob {
public:
    /// Walks through a folder; `mayHelp` as for `DeletionCrew::await`.
    using Walker = std::function<Outcome(SubtreeTask task, bool mayHelp)>;

    /// `walk` outlives the job.
    DeletionSubtree(const Walker& walk, SubtreeTask task) : walk_(walk), task_(std::move(task)) {}

    /// What became of the folder; only after the job is finished.
    [[nodiscard]] Outcome& outcome() noexcept { return outcome_; }

private:
    void run(bool mayHelp) override { outcome_ = walk_(std::move(task_), mayHelp); }

    const Walker& walk_;
    SubtreeTask task_;
    Outcome outcome_;
};

} // namespace zentrill
