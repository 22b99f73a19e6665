#include "controller/OperationQueue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <pthread.h>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace zentrill {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

TEST(OperationQueueTest, RunsJobsOneAtATimeInTheirOrderOnAnotherThread) {
    OperationQueue queue;
    std::vector<int> order; // Touched by the worker alone until the promise is kept.
    std::promise<std::thread::id> done;
    for (int job = 0; job < 1000; ++job) {
        queue.submit([&order, job] { order.push_back(job); });
    }
    queue.submit([&done] { done.set_value(std::this_thread::get_id()); });

    EXPECT_NE(done.get_future().get(), std::this_thread::get_id());
    ASSERT_EQ(order.size(), 1000U);
    for (int job = 0; job < 1000; ++job) {
        EXPECT_EQ(order.at(static_cast<std::size_t>(job)), job);
    }
}

TEST(OperationQueueTest, NamesItsThread) {
    OperationQueue queue;
    std::promise<std::string> name;
    queue.submit([&name] {
        std::string text(64, '\0');
        ::pthread_getname_np(::pthread_self(), text.data(), text.size());
        name.set_value(text.c_str());
    });
    const std::string seen = name.get_future().get();
    EXPECT_FALSE(seen.empty());
    EXPECT_EQ(std::string(OperationQueue::label).rfind(seen, 0), 0U) << seen;
}

TEST(OperationQueueTest, LetsGoOfAJobAsSoonAsItIsDone) {
    OperationQueue queue;
    auto held = std::make_shared<int>(7);
    const std::weak_ptr<int> watched = held;
    queue.submit([kept = std::move(held)] { ASSERT_EQ(*kept, 7); });
    std::promise<bool> gone;
    queue.submit([&] { gone.set_value(watched.expired()); });
    EXPECT_TRUE(gone.get_future().get());
}

TEST(OperationQueueTest, LetsWhatAJobHeldUseTheQueueAsItGoes) {
    OperationQueue queue;
    std::promise<void> done;
    std::future<void> isDone = done.get_future();
    std::shared_ptr<void> held(nullptr, [&](void*) { queue.submit([&done] { done.set_value(); }); });
    queue.submit([kept = std::move(held)] { ASSERT_EQ(kept, nullptr); });
    EXPECT_EQ(isDone.wait_for(seconds(30)), std::future_status::ready);
}

TEST(OperationQueueTest, DropsWaitingJobsWhenItStops) {
    OperationQueue queue;
    std::promise<void> started;
    std::promise<void> release;
    std::atomic<bool> ran = false;
    queue.submit([&] {
        started.set_value();
        release.get_future().wait();
    });
    queue.submit([&ran] { ran = true; });
    started.get_future().wait();

    // A job that is let go at once was refused: the queue is stopping by then, with the first job running.
    std::thread releaser([&] {
        std::weak_ptr<int> watched;
        do {
            auto held = std::make_shared<int>(0);
            watched = held;
            queue.submit([&ran, kept = std::move(held)] { ran = true; });
        } while (!watched.expired());
        release.set_value();
    });
    EXPECT_TRUE(queue.stop(seconds(30)));
    releaser.join();
    EXPECT_FALSE(ran);
}

TEST(OperationQueueTest, LeavesAJobThatDoesNotEndToItself) {
    auto release = std::make_shared<std::promise<void>>();
    std::promise<void> ended;
    {
        OperationQueue queue;
        std::promise<void> started;
        queue.submit([&started, &ended, release] {
            started.set_value();
            release->get_future().wait();
            ended.set_value();
        });
        started.get_future().wait();
        const auto before = std::chrono::steady_clock::now();
        EXPECT_FALSE(queue.stop(milliseconds(20)));
        EXPECT_GE(std::chrono::steady_clock::now() - before, milliseconds(20));
    }
    release->set_value();
    EXPECT_EQ(ended.get_future().wait_for(seconds(30)), std::future_status::ready);
}

TEST(OperationQueueTest, WaitsForTheRunningJobWhenItIsDestroyedUnstopped) {
    std::atomic<bool> finished = false;
    std::promise<void> started;
    {
        OperationQueue queue;
        queue.submit([&] {
            started.set_value();
            std::this_thread::yield();
            finished = true;
        });
        started.get_future().wait();
    }
    EXPECT_TRUE(finished);
}

} // namespace
} // namespace zentrill
