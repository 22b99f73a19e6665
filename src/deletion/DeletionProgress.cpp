#include "deletion/DeletionProgress.h"

#include <utility>

namespace zentrill {

std::uint64_t DeletionProgress::removedCount() const noexcept {
    std::uint64_t count = 0;
    for (const Place& place : places_) {
        count += place.removed.load(std::memory_order_relaxed);
    }
    return count;
}

std::string DeletionProgress::path() {
    const std::lock_guard lock(mutex_);
    wantsPath_.store(true, std::memory_order_relaxed);
    return path_;
}

DeletionProgress::Counter& DeletionProgress::counter() noexcept {
    return places_[walks_.fetch_add(1, std::memory_order_relaxed) % places].removed;
}

void DeletionProgress::setPath(std::string path) {
    const std::lock_guard lock(mutex_);
    wantsPath_.store(false, std::memory_order_relaxed);
    path_ = std::move(path);
}

} // namespace zentrill
