#include "deletion/PlanRecord.h"

#include "platform/ByteSum.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace zentrill {

namespace {

template <typename Element>
void appendUpTo(std::size_t limit, std::vector<Element>& list, std::vector<Element>& later) {
    const std::size_t count = std::min(later.size(), limit - std::min(limit, list.size()));
    std::move(later.begin(), later.begin() + static_cast<std::ptrdiff_t>(count), std::back_inserter(list));
}

} // namespace

void PlanRecord::append(PlanRecord later) {
    for (const auto items :
         {&DeletionPlan::removed, &DeletionPlan::recognizedCredentials, &DeletionPlan::listedCredentials,
          &DeletionPlan::uncertainData, &DeletionPlan::refused, &DeletionPlan::failing}) {
        DeletionPlan::Items& own = plan.*items;
        own.count += (later.plan.*items).count;
        addBytes(own.logicalBytes, (later.plan.*items).logicalBytes);
        appendUpTo(listedItems, own.listed, (later.plan.*items).listed);
    }
    addBytes(plan.freedBytes, later.plan.freedBytes);
    appendUpTo(listedFailures, plan.failures, later.plan.failures);
    foldersOfOthers += later.foldersOfOthers;
}

} // namespace zentrill
