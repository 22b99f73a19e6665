#include "deletion/PlanTeller.h"

#include <utility>

namespace zentrill {

PlanTeller::PlanTeller(std::string item, const PlanOptions& options)
    : item_(std::move(item)), options_(options), isWanted_(options.progress != nullptr) {
    if (isWanted_) {
        tell(); // Says that the item exists before any folder is read.
    }
}

void PlanTeller::gather(PlanRecord news) {
    const std::lock_guard lock(mutex_);
    gathered_.append(std::move(news));
    if (std::chrono::steady_clock::now() - lastTold_ >= interval) {
        tell();
    }
}

void PlanTeller::tellAll() {
    const std::lock_guard lock(mutex_);
    tell();
}

void PlanTeller::tell() {
    options_.progress(item_, gathered_.plan);
    gathered_ = {.plan = {}, .listedItems = options_.listedItems, .listedFailures = options_.listedItems};
    lastTold_ = std::chrono::steady_clock::now();
}

} // namespace zentrill
