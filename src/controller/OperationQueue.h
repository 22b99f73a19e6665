#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string_view>
#include <thread>

namespace zentrill {

/// Runs jobs one at a time, in order, on one background thread.
class OperationQueue {
public:
    using Job = std::function<void()>;

    static constexpr std::string_view label = "com.zentrill.operations";

    /// `threadLabel` as for `beginWorkerThread`.
    explicit OperationQueue(std::string_view threadLabel = label);
    /// If `stop` was not called, drops the waiting jobs and waits for the running one, however long it takes.
    ~OperationQueue();

    OperationQueue(const OperationQueue&) = delete;
    OperationQueue& operator=(const OperationQueue&) = delete;
    OperationQueue(OperationQueue&&) = delete;
    OperationQueue& operator=(OperationQueue&&) = delete;

    /// From any thread; after `stop` the job is dropped.
    void submit(Job job);

    /// Drops the waiting jobs and gives the running one `patience` to end. Returns whether the worker has
    /// ended; if not, it is left alone and keeps only what its job uses.
    bool stop(std::chrono::milliseconds patience);

private:
    struct State;

    static void work(State& state, std::string_view threadLabel);
    void dropWaiting();

    /// Shared with the thread, which may outlive the queue.
    std::shared_ptr<State> state_;
    std::thread worker_;
};

} // namespace zentrill
