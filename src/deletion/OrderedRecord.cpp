#include "deletion/OrderedRecord.h"

#include <iterator>
#include <utility>

namespace zentrill {

OrderedRecord::Place OrderedRecord::keepPlace() {
    const auto place = parts_.emplace(std::next(current_));
    current_ = parts_.emplace(std::next(place));
    return place;
}

void OrderedRecord::close(Place place) {
    const auto before = std::prev(place);
    const auto after = std::next(place);
    if (current_ == place || current_ == after) {
        current_ = before;
    }
    before->append(std::move(*place));
    before->append(std::move(*after));
    parts_.erase(place, std::next(after));
}

void OrderedRecord::fill(Place place, DeletionRecord record) {
    *place = std::move(record);
    close(place);
}

DeletionRecord OrderedRecord::take() {
    return std::move(parts_.front());
}

} // namespace zentrill
