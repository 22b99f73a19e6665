#include "controller/review/ReviewWorker.h"

#include "controller/review/ReviewMaker.h"

#include <atomic>
#include <mutex>
#include <utility>

namespace zentrill {

/// What the two threads have in common.
struct ReviewWorker::Run : std::enable_shared_from_this<Run> {
    explicit Run(Show shown) : show(std::move(shown)) {}

    /// On the worker.
    void publish(ReviewContent content, MainQueue& link) {
        {
            const std::lock_guard guard(mutex);
            if (std::exchange(latest, std::move(content))) {
                return; // The main thread has not come to the one before, which this one replaces.
            }
        }
        link.post([run = shared_from_this()] { run->showLatest(); });
    }

    /// On the main thread.
    void showLatest() {
        std::optional<ReviewContent> content;
        {
            const std::lock_guard guard(mutex);
            content.swap(latest);
        }
        if (content && !cancelled) {
            complete = content->complete;
            show(*content);
        }
    }

    std::atomic<bool> cancelled{false};
    std::mutex mutex;
    std::optional<ReviewContent> latest;
    // The main thread's own.
    Show show;
    bool complete = false;
};

ReviewWorker::ReviewWorker(std::shared_ptr<MainQueue> link, std::shared_ptr<const SafeDeletionEngine> engine)
    : link_(std::move(link)), engine_(std::move(engine)) {}

ReviewWorker::~ReviewWorker() {
    cancel();
}

void ReviewWorker::start(ReviewSubject subject, bool preserveCredentials, Show show) {
    cancel();
    run_ = std::make_shared<Run>(std::move(show));
    if (!queue_) {
        queue_.emplace("com.zentrill.review");
    }
    queue_->submit(
        [run = run_, link = link_, engine = engine_, subject = std::move(subject), preserveCredentials] {
            const auto shouldStop = [run, link] { return run->cancelled || !link->isOpen(); };
            ReviewMaker(
                engine, preserveCredentials,
                [run, link](ReviewContent content) { run->publish(std::move(content), *link); }, shouldStop)
                .make(subject);
        });
}

void ReviewWorker::cancel() {
    if (run_) {
        run_->cancelled = true;
        run_.reset();
    }
}

bool ReviewWorker::isRunning() const {
    return run_ && !run_->complete;
}

bool ReviewWorker::stop(std::chrono::milliseconds patience) {
    cancel();
    return !queue_ || queue_->stop(patience);
}

} // namespace zentrill
