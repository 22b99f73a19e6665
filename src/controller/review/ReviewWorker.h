#pragma once

#include "controller/BackgroundWork.h"
#include "controller/review/ReviewRow.h"
#include "controller/review/ReviewSubject.h"
#include "deletion/SafeDeletionEngine.h"
#include "deletion/SafetyShield.h"

#include <chrono>
#include <cstddef>
#include <memory>

namespace zentrill {

/// Computes reviews in the background.
///
/// Belongs to the main thread.
class ReviewWorker {
public:
    /// Called on the main thread.
    using Show = BackgroundWork<ReviewContent>::Show;

    ReviewWorker(std::shared_ptr<MainQueue> link, std::shared_ptr<const SafeDeletionEngine> engine);

    /// Enough to read; the others are counted.
    static constexpr std::size_t firstEntries = 200;

    /// Ends the previous review, of which nothing more is shown. `listedEntries` is as for `ReviewMaker`.
    void start(ReviewSubject subject, SafetyShield shield, Show show,
               std::size_t listedEntries = firstEntries);

    /// Returns at once; the thread ends its work at the next entry.
    void cancel() { work_.cancel(); }

    /// Whether something is being computed that has not been shown.
    [[nodiscard]] bool isRunning() const { return work_.isStarted() && !complete_; }

    /// To be called last: gives the thread `patience` to end, and returns whether it did.
    bool stop(std::chrono::milliseconds patience) { return work_.stop(patience); }

private:
    std::shared_ptr<const SafeDeletionEngine> engine_;
    bool complete_ = false;
    BackgroundWork<ReviewContent> work_;
};

} // namespace zentrill
