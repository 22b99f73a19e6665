#include "deletion/DeletionReport.h"

#include <iterator>
#include <utility>

namespace zentrill {

namespace {

void append(std::vector<std::string>& list, std::vector<std::string>&& more) {
    if (list.empty()) {
        list = std::move(more);
    } else {
        list.insert(list.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
    }
}

} // namespace

void DeletionReport::merge(DeletionReport other) {
    append(removed, std::move(other.removed));
    append(preserved, std::move(other.preserved));
    append(failures, std::move(other.failures));
}

} // namespace zentrill
