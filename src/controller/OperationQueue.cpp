#include "controller/OperationQueue.h"

#include "platform/WorkerThread.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <utility>

namespace zentrill {

struct OperationQueue::State {
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Job> waiting;
    bool stopping = false;
    bool ended = false;
};

OperationQueue::OperationQueue(std::string_view threadLabel)
    : state_(std::make_shared<State>()),
      worker_([state = state_, threadLabel = std::string(threadLabel)] { work(*state, threadLabel); }) {}

OperationQueue::~OperationQueue() {
    dropWaiting();
    if (worker_.joinable()) {
        worker_.join();
    }
}

void OperationQueue::submit(Job job) {
    {
        const std::lock_guard guard(state_->mutex);
        if (state_->stopping) {
            return;
        }
        state_->waiting.push_back(std::move(job));
    }
    state_->changed.notify_all();
}

bool OperationQueue::stop(std::chrono::milliseconds patience) {
    dropWaiting();
    std::unique_lock lock(state_->mutex);
    const bool ended = state_->changed.wait_for(lock, patience, [this] { return state_->ended; });
    lock.unlock();
    if (worker_.joinable()) {
        if (ended) {
            worker_.join();
        } else {
            worker_.detach();
        }
    }
    return ended;
}

void OperationQueue::dropWaiting() {
    std::deque<Job> dropped;
    {
        const std::lock_guard guard(state_->mutex);
        state_->stopping = true;
        dropped.swap(state_->waiting);
    }
    state_->changed.notify_all();
}

void OperationQueue::work(State& state, std::string_view threadLabel) {
    beginWorkerThread(threadLabel);
    std::unique_lock lock(state.mutex);
    for (;;) {
        state.changed.wait(lock, [&state] { return state.stopping || !state.waiting.empty(); });
        if (state.stopping) {
            break;
        }
        Job job = std::move(state.waiting.front());
        state.waiting.pop_front();
        lock.unlock();
        job();
        job = nullptr;
        lock.lock();
    }
    state.ended = true;
    state.changed.notify_all();
}

} // namespace zentrill
