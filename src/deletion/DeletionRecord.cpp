#include "deletion/DeletionRecord.h"

#include <utility>

namespace zentrill {

void DeletionRecord::append(DeletionRecord later) {
    report.merge(std::move(later.report));
    removedCount += later.removedCount;
    if (!firstFailure) {
        firstFailure = std::move(later.firstFailure);
    }
    foldersOfOthers += later.foldersOfOthers;
}

} // namespace zentrill
