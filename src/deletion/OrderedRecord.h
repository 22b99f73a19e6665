#pragma once

#include <cstddef>
#include <iterator>
#include <list>
#include <utility>

namespace zentrill {

/// A record in the order of a walk, though parts of it come late: what another thread does, or what the walk
/// itself comes back to.
///
///     const OrderedRecord<DeletionRecord>::Place place = record.keepPlace();
///     record.current().removedCount += 1;          // Comes after what belongs in the place.
///     record.fill(place, whatTheOtherThreadDid);
///
/// A place is filled or closed once, and so is every place kept while recording into it, before it. What
/// stands on both sides is joined then, by `Record::append`: there are two parts for each open place, and one
/// more.
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

    /// Where what happens now belongs.
    [[nodiscard]] Record& current() noexcept { return *current_; }

    /// Keeps a place after what was recorded last; what is recorded from now on comes after it.
    [[nodiscard]] Place keepPlace() {
        const auto place = parts_.insert(std::next(current_), empty_);
        current_ = parts_.insert(std::next(place), empty_);
        return place;
    }

    /// Records into the kept place from now on, until it is closed.
    void goTo(Place place) noexcept { current_ = place; }

    /// Ends the recording into a kept place, if it was begun, and goes on after it.
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

    /// Puts into the kept place what was recorded elsewhere.
    void fill(Place place, Record record) {
        *place = std::move(record);
        close(place);
    }

    [[nodiscard]] std::size_t partCount() const noexcept { return parts_.size(); }

    /// The whole record; once, and when no place is open.
    [[nodiscard]] Record take() { return std::move(parts_.front()); }

private:
    Record empty_;
    /// Each kept place lies between two parts of its own, so that there is something to join it to.
    Parts parts_;
    Place current_;
};

} // namespace zentrill
