#pragma once

#include "controller/MainQueue.h"
#include "controller/OperationQueue.h"
#include "controller/review/ReviewRow.h"
#include "controller/review/ReviewSubject.h"
#include "deletion/SafeDeletionEngine.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace zentrill {

/// Computes reviews on a thread of its own, which there is from the first one on. An operation does not wait
/// for it. The main thread gets the newest content when it has time, however fast they come.
///
/// Belongs to the main thread.
class ReviewWorker {
public:
    /// Called on the main thread.
    using Show = std::function<void(const ReviewContent&)>;

    ReviewWorker(std::shared_ptr<MainQueue> link, std::shared_ptr<const SafeDeletionEngine> engine);
    ~ReviewWorker();

    ReviewWorker(const ReviewWorker&) = delete;
    ReviewWorker& operator=(const ReviewWorker&) = delete;
    ReviewWorker(ReviewWorker&&) = delete;
    ReviewWorker& operator=(ReviewWorker&&) = delete;

    /// Ends the review before, of which nothing is shown any more.
    void start(ReviewSubject subject, bool preserveCredentials, Show show);

    /// Returns at once; the thread ends its work at the next entry.
    void cancel();

    /// Whether something is being computed that has not been shown.
    [[nodiscard]] bool isRunning() const;

    /// For good: gives the thread `patience` to end, and returns whether it did.
    bool stop(std::chrono::milliseconds patience);

private:
    struct Run;

    std::shared_ptr<MainQueue> link_;
    std::shared_ptr<const SafeDeletionEngine> engine_;
    std::shared_ptr<Run> run_;
    std::optional<OperationQueue> queue_;
};

} // namespace zentrill
