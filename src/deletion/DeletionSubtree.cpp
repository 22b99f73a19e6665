#include "deletion/DeletionSubtree.h"

#include "deletion/DeletionWalk.h"

#include <utility>

namespace zentrill {

DeletionSubtree::DeletionSubtree(const DeletionRules& rules, DeletionCrew& crew, DirectoryHandle parent,
                                 std::string path, std::string standardizedPath)
    : rules_(rules),
      crew_(crew),
      parent_(std::move(parent)),
      path_(std::move(path)),
      standardizedPath_(std::move(standardizedPath)) {}

void DeletionSubtree::run(bool mayHelp) {
    DeletionWalk walk(rules_, std::move(path_), std::move(standardizedPath_), std::move(parent_), crew_,
                      mayHelp);
    outcome_ = walk.runFolder();
}

} // namespace zentrill
