#include "deletion/DeletionSubtree.h"

#include <utility>

namespace zentrill {

DeletionSubtree::DeletionSubtree(const DeletionWalk::Rules& rules, DeletionCrew& crew, DirectoryHandle parent,
                                 std::string name, std::string path, std::string standardizedPath)
    : rules_(rules),
      crew_(crew),
      parent_(std::move(parent)),
      name_(std::move(name)),
      path_(std::move(path)),
      standardizedPath_(std::move(standardizedPath)) {}

void DeletionSubtree::run(bool mayHelp) {
    DeletionWalk walk(rules_, std::move(path_), std::move(standardizedPath_), std::move(parent_));
    walk.crew_ = &crew_;
    walk.mayHelp_ = mayHelp;
    outcome_ = walk.runUnprotected(EntryKind::directory);
}

} // namespace zentrill
