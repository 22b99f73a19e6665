#include "deletion/DeletionCrew.h"

#include "platform/WorkerThread.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace zentrill {

DeletionCrew::DeletionCrew(std::size_t helpers) {
    helpers_.reserve(helpers);
    try {
        while (helpers_.size() < helpers) {
            helpers_.emplace_back([this] { work(); });
        }
    } catch (const std::system_error&) {
        helpers = helpers_.size(); // The deletion makes do with the threads that it got.
    }
    capacity_ = 2 * helpers;
}

DeletionCrew::~DeletionCrew() {
    {
        const std::lock_guard lock(mutex_);
        dismissed_ = true;
    }
    jobOffered_.notify_all();
    for (std::thread& helper : helpers_) {
        helper.join();
    }
}

void DeletionCrew::offer(std::shared_ptr<DeletionJob> job) {
    {
        const std::lock_guard lock(mutex_);
        queue_.push_back(std::move(job));
        queued_.store(queue_.size(), std::memory_order_relaxed);
    }
    jobOffered_.notify_one();
    progress_.notify_all();
}

bool DeletionCrew::withdraw(const DeletionJob& job) {
    const std::lock_guard lock(mutex_);
    const auto found = std::ranges::find(queue_, &job, &std::shared_ptr<DeletionJob>::get);
    if (found == queue_.end()) {
        return false;
    }
    queue_.erase(found);
    queued_.store(queue_.size(), std::memory_order_relaxed);
    return true;
}

void DeletionCrew::await(const DeletionJob& job, bool mayHelp) {
    std::unique_lock lock(mutex_);
    while (!job.isFinished()) {
        if (mayHelp && !queue_.empty()) {
            const std::shared_ptr<DeletionJob> other = takeOldest();
            runUnlocked(*other, false, lock);
        } else {
            progress_.wait(lock);
        }
    }
}

void DeletionCrew::work() {
    beginWorkerThread("deletion crew");
    std::unique_lock lock(mutex_);
    while (true) {
        jobOffered_.wait(lock, [this] { return dismissed_ || !queue_.empty(); });
        if (queue_.empty()) {
            return;
        }
        const std::shared_ptr<DeletionJob> job = takeOldest();
        runUnlocked(*job, true, lock);
    }
}

/// The oldest one is nearest to the top of the tree, and so probably the largest.
std::shared_ptr<DeletionJob> DeletionCrew::takeOldest() {
    std::shared_ptr<DeletionJob> job = std::move(queue_.front());
    queue_.pop_front();
    queued_.store(queue_.size(), std::memory_order_relaxed);
    return job;
}

void DeletionCrew::runUnlocked(DeletionJob& job, bool mayHelp, std::unique_lock<std::mutex>& lock) {
    lock.unlock();
    job.execute(mayHelp);
    lock.lock(); // Whoever saw it unfinished under the lock is waiting by now.
    progress_.notify_all();
}

} // namespace zentrill
