#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace zentrill {

/// A part of one deletion, or of its plan, that any thread can do by itself.
class DeletionJob {
public:
    DeletionJob() = default;
    DeletionJob(const DeletionJob&) = delete;
    DeletionJob(DeletionJob&&) = delete;
    DeletionJob& operator=(const DeletionJob&) = delete;
    DeletionJob& operator=(DeletionJob&&) = delete;
    virtual ~DeletionJob() = default;

    [[nodiscard]] bool isFinished() const noexcept { return finished_.load(std::memory_order_acquire); }

    /// Does the job, once; `mayHelp` as for `DeletionCrew::await`.
    void execute(bool mayHelp) {
        run(mayHelp);
        finished_.store(true, std::memory_order_release);
    }

private:
    virtual void run(bool mayHelp) = 0;

    std::atomic<bool> finished_{false};
};

/// The threads that take part in one deletion, or in its plan, beside the one that began it.
///
/// Whoever offers a job must withdraw it or await its end. The queue is short: a job that no thread can take
/// soon is better done where it was found, and every waiting job keeps a descriptor open.
class DeletionCrew {
public:
    /// As many of the `helpers` threads as the system grants.
    explicit DeletionCrew(std::size_t helpers);
    ~DeletionCrew();

    DeletionCrew(const DeletionCrew&) = delete;
    DeletionCrew(DeletionCrew&&) = delete;
    DeletionCrew& operator=(const DeletionCrew&) = delete;
    DeletionCrew& operator=(DeletionCrew&&) = delete;

    [[nodiscard]] bool wantsJobs() const noexcept {
        return queued_.load(std::memory_order_relaxed) < capacity_;
    }

    void offer(std::shared_ptr<DeletionJob> job);

    /// Takes the job back if no thread has begun it.
    [[nodiscard]] bool withdraw(const DeletionJob& job);

    /// Returns when the job is finished. With `mayHelp` the thread does other jobs while it waits. These run
    /// without that right, so that no thread is ever inside more than two jobs.
    void await(const DeletionJob& job, bool mayHelp);

private:
    void work();
    [[nodiscard]] std::shared_ptr<DeletionJob> takeOldest();
    void runUnlocked(DeletionJob& job, bool mayHelp, std::unique_lock<std::mutex>& lock);

    std::mutex mutex_;
    std::condition_variable jobOffered_;
    /// Tells those who await a job that one is finished, or that there is one to help with.
    std::condition_variable progress_;
    std::deque<std::shared_ptr<DeletionJob>> queue_;
    /// The queue's size, readable without the lock.
    std::atomic<std::size_t> queued_{0};
    std::size_t capacity_ = 0;
    bool dismissed_ = false;
    std::vector<std::thread> helpers_;
};

} // namespace zentrill
