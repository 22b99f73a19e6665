#pragma once

#include "deletion/DeletionCrew.h"
#include "deletion/DeletionWalk.h"
#include "platform/DirectoryHandle.h"

#include <string>

namespace zentrill {

/// A folder that a walk leaves to another thread.
class DeletionSubtree : public DeletionJob {
public:
    /// `parent` is a handle of its own on the folder that holds `name`; the paths are those of the folder as
    /// for `DeletionWalk`. `rules` and `crew` outlive the job.
    DeletionSubtree(const DeletionWalk::Rules& rules, DeletionCrew& crew, DirectoryHandle parent,
                    std::string name, std::string path, std::string standardizedPath);

    [[nodiscard]] const std::string& name() const noexcept { return name_; }

    /// What became of it; once it is finished.
    [[nodiscard]] DeletionWalk::Outcome& outcome() noexcept { return outcome_; }

private:
    void run(bool mayHelp) override;

    const DeletionWalk::Rules& rules_;
    DeletionCrew& crew_;
    DirectoryHandle parent_;
    std::string name_;
    std::string path_;
    std::string standardizedPath_;
    DeletionWalk::Outcome outcome_;
};

} // namespace zentrill
