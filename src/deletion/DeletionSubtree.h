#pragma once

#include "deletion/DeletionCrew.h"
#include "deletion/DeletionOutcome.h"
#include "deletion/DeletionRules.h"
#include "platform/DirectoryHandle.h"

#include <string>

namespace zentrill {

/// A folder that a walk leaves to another thread.
class DeletionSubtree : public DeletionJob {
public:
    /// `parent` is a handle of its own on the folder that holds the one at `path`; the paths are those of the
    /// folder as for `DeletionWalk`. `rules` and `crew` outlive the job.
    DeletionSubtree(const DeletionRules& rules, DeletionCrew& crew, DirectoryHandle parent, std::string path,
                    std::string standardizedPath);

    /// What became of it; once it is finished.
    [[nodiscard]] DeletionOutcome& outcome() noexcept { return outcome_; }

private:
    void run(bool mayHelp) override;

    const DeletionRules& rules_;
    DeletionCrew& crew_;
    DirectoryHandle parent_;
    std::string path_;
    std::string standardizedPath_;
    DeletionOutcome outcome_;
};

} // namespace zentrill
