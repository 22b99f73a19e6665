#pragma once

#include "deletion/DeletionRecord.h"

#include <cstddef>
#include <list>

namespace zentrill {

/// A record in the order of a walk, though parts of it come late: what another thread does, or what the walk
/// itself comes back to.
///
///     const OrderedRecord::Place place = record.keepPlace();
///     record.current().removedCount += 1;          // Comes after what belongs in the place.
///     record.fill(place, whatTheOtherThreadDid);
///
/// A place is filled or closed once, and so is every place kept while recording into it, before it. What
/// stands on both sides is joined then: there are two parts for each open place, and one more.
class OrderedRecord {
    using Parts = std::list<DeletionRecord>;

public:
    using Place = Parts::iterator;

    OrderedRecord() : parts_(1), current_(parts_.begin()) {}

    ~OrderedRecord() = default;

    OrderedRecord(const OrderedRecord&) = delete;
    OrderedRecord(OrderedRecord&&) = delete;
    OrderedRecord& operator=(const OrderedRecord&) = delete;
    OrderedRecord& operator=(OrderedRecord&&) = delete;

    /// Where what happens now belongs.
    [[nodiscard]] DeletionRecord& current() noexcept { return *current_; }

    /// Keeps a place after what was recorded last; what is recorded from now on comes after it.
    [[nodiscard]] Place keepPlace();

    /// Records into the kept place from now on, until it is closed.
    void goTo(Place place) noexcept { current_ = place; }

    /// Ends the recording into a kept place, if it was begun, and goes on after it.
    void close(Place place);

    /// Puts into the kept place what was recorded elsewhere.
    void fill(Place place, DeletionRecord record);

    [[nodiscard]] std::size_t partCount() const noexcept { return parts_.size(); }

    /// The whole record; once, and when no place is open.
    [[nodiscard]] DeletionRecord take();

private:
    /// Each kept place lies between two parts of its own, so that there is something to join it to.
    Parts parts_;
    Place current_;
};

} // namespace zentrill
