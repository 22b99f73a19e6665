#include "controller/BackgroundWork.h"

#include "ControllerFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace zentrill {
namespace {

using testing::ElementsAre;

class BackgroundWorkTest : public testing::Test {
protected:
    ~BackgroundWorkTest() override { link_->close(); }

    BackgroundWork<int>::Show note() {
        return [this](const int& number) { shown_.push_back(number); };
    }

    std::shared_ptr<MainQueue> link_ = std::make_shared<MainQueue>([](const auto& /*lines*/) {});
    std::vector<int> shown_;
    BackgroundWork<int> work_{link_, "com.zentrill.test"};
};

TEST_F(BackgroundWorkTest, ShowsTheNewestResult) {
    const auto finished = std::make_shared<std::promise<void>>();
    work_.start(
        [finished](const auto& publish, const auto& /*shouldStop*/) {
            publish(1);
            publish(2);
            publish(3);
            finished->set_value();
        },
        note());
    EXPECT_TRUE(work_.isStarted());
    finished->get_future().wait();
    ASSERT_TRUE(test::waitUntil([this] { return !shown_.empty(); }));
    EXPECT_THAT(shown_, ElementsAre(3));
}

TEST_F(BackgroundWorkTest, ShowsNothingOfWhatWasCancelled) {
    const auto gate = std::make_shared<test::Gate>();
    work_.start(
        [gate](const auto& publish, const auto& shouldStop) {
            gate->pass();
            publish(shouldStop() ? 1 : 2);
        },
        note());
    ASSERT_TRUE(gate->waitForArrival());
    work_.cancel();
    EXPECT_FALSE(work_.isStarted());
    gate->open();
    work_.start([](const auto& publish, const auto& /*shouldStop*/) { publish(3); }, note());
    ASSERT_TRUE(test::waitUntil([this] { return !shown_.empty(); }));
    EXPECT_THAT(shown_, ElementsAre(3));
}

TEST_F(BackgroundWorkTest, TellsWorkToStop) {
    const auto gate = std::make_shared<test::Gate>();
    const auto stopped = std::make_shared<std::promise<bool>>();
    work_.start(
        [gate, stopped](const auto& /*publish*/, const auto& shouldStop) {
            gate->pass();
            stopped->set_value(shouldStop());
        },
        note());
    ASSERT_TRUE(gate->waitForArrival());
    work_.cancel();
    gate->open();
    EXPECT_TRUE(stopped->get_future().get());
    EXPECT_TRUE(work_.stop(std::chrono::seconds(60)));
}

TEST_F(BackgroundWorkTest, LeavesAThreadThatDoesNotEnd) {
    const auto gate = std::make_shared<test::Gate>();
    work_.start([gate](const auto& /*publish*/, const auto& /*shouldStop*/) { gate->pass(); }, note());
    ASSERT_TRUE(gate->waitForArrival());
    EXPECT_FALSE(work_.stop(std::chrono::milliseconds(1)));
    gate->open();
}

} // namespace
} // namespace zentrill
