#pragma once

#include "controller/MainQueue.h"
#include "controller/OperationQueue.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>
#include <utility>

namespace zentrill {

/// Finds something out on a thread that is started when it is first needed. Operations do not wait for it.
/// The main thread gets the newest result when it has time, however fast the results come.
///
///     BackgroundWork<Size> sizes(link, "com.zentrill.sizes");
///     sizes.start([](const auto& publish, const auto& shouldStop) { … publish(size); … }, show);
///
/// Belongs to the main thread.
template <typename Result>
class BackgroundWork {
public:
    using Publish = std::function<void(Result)>;
    /// Runs on the thread; `shouldStop` may be asked on any.
    using Work = std::function<void(const Publish& publish, const std::function<bool()>& shouldStop)>;
    /// Called on the main thread.
    using Show = std::function<void(const Result&)>;

    /// `threadLabel` is as for `OperationQueue`, and must live as long as the program.
    BackgroundWork(std::shared_ptr<MainQueue> link, std::string_view threadLabel)
        : link_(std::move(link)), threadLabel_(threadLabel) {}

    ~BackgroundWork() { cancel(); }

    BackgroundWork(const BackgroundWork&) = delete;
    BackgroundWork& operator=(const BackgroundWork&) = delete;
    BackgroundWork(BackgroundWork&&) = delete;
    BackgroundWork& operator=(BackgroundWork&&) = delete;

    /// Cancels the previous work.
    void start(Work work, Show show) {
        cancel();
        run_ = std::make_shared<Run>(std::move(show));
        if (!queue_) {
            queue_.emplace(threadLabel_);
        }
        queue_->submit([run = run_, link = link_, work = std::move(work)] {
            const auto shouldStop = [run, link] { return run->cancelled || !link->isOpen(); };
            if (!shouldStop()) {
                work([run, link](Result result) { run->publish(std::move(result), *link); }, shouldStop);
            }
        });
    }

    /// Returns at once, and nothing more is shown; the work ends when it next asks whether it should stop.
    void cancel() {
        if (run_) {
            run_->cancelled = true;
            run_.reset();
        }
    }

    /// Whether something was started and not cancelled.
    [[nodiscard]] bool isStarted() const { return run_ != nullptr; }

    /// For good: gives the thread `patience` to end, and returns whether it did.
    bool stop(std::chrono::milliseconds patience) {
        cancel();
        return !queue_ || queue_->stop(patience);
    }

private:
    /// What the two threads have in common.
    struct Run : std::enable_shared_from_this<Run> {
        explicit Run(Show shown) : show(std::move(shown)) {}

        /// On the thread.
        void publish(Result result, MainQueue& link) {
            {
                const std::lock_guard guard(mutex);
                if (std::exchange(latest, std::move(result))) {
                    return; // The main thread has not taken the previous result yet, which this one replaces.
                }
            }
            link.post([run = this->shared_from_this()] { run->showLatest(); });
        }

        /// On the main thread.
        void showLatest() {
            std::optional<Result> result;
            {
                const std::lock_guard guard(mutex);
                result.swap(latest);
            }
            if (result && !cancelled) {
                show(*result);
            }
        }

        std::atomic<bool> cancelled{false};
        std::mutex mutex;
        std::optional<Result> latest;
        // Used by the main thread alone.
        Show show;
    };

    std::shared_ptr<MainQueue> link_;
    std::string_view threadLabel_;
    std::shared_ptr<Run> run_;
    std::optional<OperationQueue> queue_;
};

} // namespace zentrill
