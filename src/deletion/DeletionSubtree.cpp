#include "deletion/DeletionSubtree.h"

#include <utility>

namespace zentrill {

DeletionSubtree::DeletionSubtree(const Remover& remove, Task task)
    : remove_(remove), task_(std::move(task)) {}

void DeletionSubtree::run(bool mayHelp) {
    outcome_ = remove_(std::move(task_), mayHelp);
}

} // namespace zentrill
