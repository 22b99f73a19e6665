#pragma once

#include "deletion/DeletionCrew.h"
#include "deletion/DeletionOutcome.h"
#include "deletion/ItemPaths.h"
#include "platform/DirectoryHandle.h"
#include "platform/EntryStatus.h"

#include <functional>

namespace zentrill {

/// A folder that a walk leaves to another thread.
class DeletionSubtree : public DeletionJob {
public:
    /// What there is to know of the folder.
    struct Task {
        /// A handle of its own on the folder that holds it.
        DirectoryHandle parent;
        ItemPaths paths;
        /// The item of the whole deletion.
        FileIdentity item;
    };

    /// Removes a folder; `mayHelp` as for `DeletionCrew::await`.
    using Remover = std::function<DeletionOutcome(Task task, bool mayHelp)>;

    /// `remove` outlives the job.
    DeletionSubtree(const Remover& remove, Task task);

    /// What became of it; once it is finished.
    [[nodiscard]] DeletionOutcome& outcome() noexcept { return outcome_; }

private:
    void run(bool mayHelp) override;

    const Remover& remove_;
    Task task_;
    DeletionOutcome outcome_;
};

} // namespace zentrill
