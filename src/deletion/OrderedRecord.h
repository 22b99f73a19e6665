#pragma once

#include <cstddef>
#include <iterator>
#include <list>
#include <utility>

namespace zentrill {

/// A record in the order of a walk, of which some parts come late: from another thread, or because the walk
/// itself comes back to them.
///
///     const OrderedRecord<DeletionRecord>::Place place = record.keepPlace();
///     record.current().removedCount += 1;          // Comes after what belongs in the place.
///     record.fill(place, whatTheOtherThreadDid);
///
/// Each place is filled or closed once, after all places that were kept while recording into it. The parts on
/// both sides are then joined by `Record::append`, so that there are never more than two parts for each open
/// place, and one more.
template <typename Record>
class OrderedRecord {
    using Parts = std::list<Record>;

public:
    using Place = typename Parts::iterator;

    /// Each part begins as a copy of `empty`.
    explicit OrderedRecord(Record empty = {})
        : empty_(std::move(empty)), parts_(1, empty_), current_(parts_.begin()) {}

    ~OrderedRecord() = default;

    OrderedRecord(const OrderedRecord&) = delete;
    OrderedRecord(OrderedRecord&&) = delete;
    OrderedRecord& operator=(const OrderedRecord&) = delete;
    OrderedRecord& operator=(OrderedRecord&&) = delete;

    /// The part that takes what happens now.
    [[nodiscard]] Record& current() noexcept { return *current_; }

    /// Keeps a place after the last entry; what is recorded from now on comes after the place.
    [[nodiscard]] Place keepPlace() {
        const auto place = parts_.insert(std::next(current_), empty_);
        current_ = parts_.insert(std::next(place), empty_);
        return place;
    }

    /// From now on, until the place is closed, records into it.
    void goTo(Place place) noexcept { current_ = place; }

    /// Closes the place; if it was being recorded into, recording goes on after it.
    void close(Place place) {
        const auto before = std::prev(place);
        const auto after = std::next(place);
        if (current_ == place || current_ == after) {
            current_ = before;
        }
        before->append(std::move(*place));
        before->append(std::move(*after));
        parts_.erase(place, std::next(after));
    }

    /// Puts what was recorded elsewhere into the place, and closes it.
    void fill(Place place, Record record) {
        *place = std::move(record);
        close(place);
    }

    [[nodiscard]] std::size_t partCount() const noexcept { return parts_.size(); }

    /// The whole record. To be called once, when no place is open.
    [[nodiscard]] Record take() { return std::move(parts_.front()); }

private:
    Record empty_;
    /// Each kept place lies between two parts of its own, so that there is something to join it to.
    Parts parts_;
    Place current_;
};

} // namespace zentrill
