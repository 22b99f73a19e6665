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
/// Whoever offers a job withdraws it or awaits its end. Only a short queue is kept: what nobody can take soon
/// is better done where it was found, and every waiting job holds a descriptor.
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

    /// Takes the job back if nobody has begun it.
    [[nodiscard]] bool withdraw(const DeletionJob& job);

    /// Returns when the job is finished. A thread that `mayHelp` does others' jobs until then; those are run
    /// without that right, so that no thread is ever inside of more than two.
    void await(const DeletionJob& job, bool mayHelp);

private:
    void work();
    [[nodiscard]] std::shared_ptr<DeletionJob> takeOldest();
    void runUnlocked(DeletionJob& job, bool mayHelp, std::unique_lock<std::mutex>& lock);

    std::mutex mutex_;
    std::condition_variable jobOffered_;
    /// For those who await a job: one is finished, or there is one to help with.
    std::condition_variable progress_;
    std::deque<std::shared_ptr<DeletionJob>> queue_;
    /// The queue's size, readable without the lock.
    std::atomic<std::size_t> queued_{0};
    std::size_t capacity_ = 0;
    bool dismissed_ = false;
    std::vector<std::thread> helpers_;
};

} // namespace zentrill
