#include "controller/MainQueue.h"

#include "support/EventLoop.h"

#include <QEvent>
#include <QObject>
#include <QTimer>
#include <gtest/gtest.h>

#include <atomic>
#include <numeric>
#include <thread>

namespace zentrill {
namespace {

using std::chrono::milliseconds;
using test::waitUntil;

class MainQueueTest : public ::testing::Test {
protected:
    ~MainQueueTest() override { queue_->close(); }

    void record(const std::vector<std::string>& lines) {
        EXPECT_EQ(std::this_thread::get_id(), mainThread_);
        batches_.push_back(lines.size());
        seen_.insert(seen_.end(), lines.begin(), lines.end());
    }

    const std::thread::id mainThread_ = std::this_thread::get_id();
    std::vector<std::size_t> batches_;
    std::vector<std::string> seen_;
    std::shared_ptr<MainQueue> queue_ =
        std::make_shared<MainQueue>([this](const std::vector<std::string>& lines) { record(lines); });
};

TEST_F(MainQueueTest, KeepsTasksAndLinesOfOneThreadInTheirOrder) {
    std::thread worker([this] {
        for (int round = 0; round < 2000; ++round) {
            queue_->postLine("line " + std::to_string(round));
            if (round % 3 == 0) {
                queue_->post([this, round] { seen_.push_back("task " + std::to_string(round)); });
            }
        }
    });
    ASSERT_TRUE(waitUntil([this] { return seen_.size() == 2667; }));
    worker.join();

    std::size_t position = 0;
    for (int round = 0; round < 2000; ++round) {
        ASSERT_EQ(seen_.at(position++), "line " + std::to_string(round));
        if (round % 3 == 0) {
            ASSERT_EQ(seen_.at(position++), "task " + std::to_string(round));
        }
    }
}

TEST_F(MainQueueTest, LosesNothingOfSeveralThreads) {
    constexpr int threadCount = 4;
    constexpr int linesEach = 5000;
    std::vector<std::thread> workers;
    workers.reserve(threadCount);
    for (int number = 0; number < threadCount; ++number) {
        workers.emplace_back([this] {
            for (int line = 0; line < linesEach; ++line) {
                queue_->postLine("x");
            }
        });
    }
    EXPECT_TRUE(waitUntil([this] { return seen_.size() == std::size_t{threadCount} * linesEach; }));
    for (std::thread& worker : workers) {
        worker.join();
    }
}

TEST_F(MainQueueTest, WakesAnEventLoopThatSleeps) {
    bool reached = false;
    for (int round = 0; round < 50; ++round) {
        reached = false;
        std::thread worker([this, &reached] { queue_->post([&reached] { reached = true; }); });
        ASSERT_TRUE(waitUntil([&reached] { return reached; }));
        worker.join();
    }
}

TEST_F(MainQueueTest, HandsConsecutiveLinesOverTogether) {
    for (int line = 0; line < 3; ++line) {
        queue_->postLine("a");
    }
    queue_->post([this] { EXPECT_EQ(seen_.size(), 3U); });
    for (int line = 0; line < 5; ++line) {
        queue_->postLine("b");
    }
    ASSERT_TRUE(waitUntil([this] { return seen_.size() == 8; }));
    EXPECT_EQ(batches_, (std::vector<std::size_t>{3, 5}));
}

TEST_F(MainQueueTest, NeverRunsATaskInsideTheCallThatPostsIt) {
    bool reached = false;
    queue_->post([&reached] { reached = true; });
    EXPECT_FALSE(reached);
    EXPECT_TRUE(waitUntil([&reached] { return reached; }));
}

TEST_F(MainQueueTest, TakesTasksThatATaskPosts) {
    int rounds = 0;
    std::function<void()> again = [&] {
        if (++rounds < 100) {
            queue_->post(again);
        }
    };
    queue_->post(again);
    EXPECT_TRUE(waitUntil([&rounds] { return rounds == 100; }));
}

TEST_F(MainQueueTest, LetsTheEventLoopLiveWhileManyLinesWait) {
    constexpr std::size_t lineCount = 300'000;
    for (std::size_t line = 0; line < lineCount; ++line) {
        queue_->postLine("a line of the length that most lines of the log have, more or less");
    }
    int turns = 0;
    QTimer others;
    QObject::connect(&others, &QTimer::timeout, &others, [&turns] { ++turns; });
    others.start(0);
    ASSERT_TRUE(waitUntil([this] { return seen_.size() == lineCount; }));
    EXPECT_GT(turns, 3);
    EXPECT_LE(*std::max_element(batches_.begin(), batches_.end()), 4096U);
}

TEST_F(MainQueueTest, DropsEverythingOnceItIsClosed) {
    auto held = std::make_shared<int>(0);
    const std::weak_ptr<int> watched = held;
    queue_->post([kept = std::move(held)] { FAIL() << *kept; });
    queue_->postLine("never seen");
    EXPECT_TRUE(queue_->isOpen());
    queue_->close();
    EXPECT_FALSE(queue_->isOpen());
    EXPECT_TRUE(watched.expired());

    bool turned = false;
    auto late = std::make_shared<int>(0);
    const std::weak_ptr<int> watchedLate = late;
    queue_->post([kept = std::move(late)] { FAIL() << *kept; });
    EXPECT_TRUE(watchedLate.expired()) << "kept, though nothing will ever take it";
    queue_->postLine("never seen");
    QTimer::singleShot(0, [&turned] { turned = true; });
    EXPECT_TRUE(waitUntil([&turned] { return turned; }));
    EXPECT_TRUE(seen_.empty());
}

TEST_F(MainQueueTest, MayBeClosedByItsOwnTask) {
    bool closed = false;
    queue_->post([this, &closed] {
        queue_->close();
        closed = true;
    });
    queue_->post([] { FAIL(); });
    queue_->postLine("never seen");
    EXPECT_TRUE(waitUntil([&closed] { return closed; }));
    EXPECT_TRUE(seen_.empty());
}

TEST_F(MainQueueTest, MayBeLetGoByItsOwnTask) {
    bool done = false;
    auto other = std::make_shared<MainQueue>([](const std::vector<std::string>&) {});
    const std::weak_ptr<MainQueue> watched = other;
    other->post([&other, &done] {
        other->close();
        other.reset();
        done = true;
    });
    EXPECT_TRUE(waitUntil([&] { return done && watched.expired(); }));
}

TEST_F(MainQueueTest, MayBeClosedWhileAThreadIsStillPosting) {
    std::atomic<bool> stop = false;
    std::thread worker([queue = queue_, &stop] {
        while (!stop) {
            queue->postLine("x");
            queue->post([] {});
        }
    });
    EXPECT_TRUE(waitUntil([this] { return seen_.size() > 100; }));
    queue_->close();
    const std::size_t seen = seen_.size();
    stop = true;
    worker.join();
    EXPECT_EQ(seen_.size(), seen);
}

TEST(MainQueueDeathTest, MustBeClosedBeforeItGoes) {
    ::testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_DEATH(
        { MainQueue queue([](const std::vector<std::string>&) {}); },
        "a mailbox was dropped without being closed");
}

} // namespace
} // namespace zentrill
