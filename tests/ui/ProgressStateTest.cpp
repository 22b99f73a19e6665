#include "ui/ProgressState.h"

#include "UiFixture.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

#include <chrono>
#include <string>

namespace zentrill {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

/// An operation that stands still until the test lets it go on, and a clock that the test sets.
class ProgressStateTest : public test::UiFixture {
protected:
    /// Begins the removal of a model, which Ollama's tool is busy with.
    [[nodiscard]] bool begin() {
        answer_ = [this](const test::FakeCommandRunner::Call&) {
            gate_.pass();
            return test::ok();
        };
        controller_->deleteModel(
            {.name = "m:1", .source = std::string(ollamaSource), .path = home_.path("none")});
        return gate_.waitForArrival();
    }

    [[nodiscard]] bool end() {
        gate_.open();
        return waitUntilIdle();
    }

    /// As if so many items had gone.
    void remove(std::uint64_t items, const std::string& path) const {
        controller_->deletionProgress().counter() += items;
        controller_->deletionProgress().setPath(path);
    }

    void lookAfter(milliseconds time) {
        now_ += time;
        progress_.refresh();
    }

    test::Gate gate_;
    std::chrono::steady_clock::time_point now_;
    ProgressState progress_{*controller_, [this] { return now_; }};
};

TEST_F(ProgressStateTest, WordsNumbersAndTimes) {
    EXPECT_EQ(ProgressState::progressText(28'445, seconds(41)), QStringLiteral("28,445 items · 0:41"));
    EXPECT_EQ(ProgressState::progressText(1, seconds(0)), QStringLiteral("1 item · 0:00"));
    EXPECT_EQ(ProgressState::progressText(0, seconds(3'599)), QStringLiteral("59:59"));
    EXPECT_EQ(ProgressState::progressText(0, seconds(3'600)), QStringLiteral("1:00:00"));
    EXPECT_EQ(ProgressState::progressText(1'000'000, seconds(3'723)),
              QStringLiteral("1,000,000 items · 1:02:03"));
}

TEST_F(ProgressStateTest, SaysHowFarItIsWhileSomethingIsRemoved) {
    EXPECT_EQ(progress_.text(), QString());
    ASSERT_TRUE(begin());
    remove(2'000, "/home/someone/a");
    lookAfter(milliseconds(250));
    EXPECT_EQ(progress_.text(), QStringLiteral("2,000 items · 0:00"));
    EXPECT_EQ(progress_.spokenText(), progress_.text());
    EXPECT_EQ(progress_.path(), QStringLiteral("/home/someone/a"));
    ASSERT_TRUE(end());
    EXPECT_EQ(progress_.text(), QString());
    EXPECT_EQ(progress_.spokenText(), QString());
    EXPECT_EQ(progress_.path(), QString());
}

TEST_F(ProgressStateTest, LooksByItself) {
    now_ += seconds(5); // Not the clock's beginning.
    ASSERT_TRUE(begin());
    remove(7, "/a");
    EXPECT_TRUE(test::waitUntil([this] { return progress_.text() == QStringLiteral("7 items · 0:00"); }));
    ASSERT_TRUE(end());
}

TEST_F(ProgressStateTest, ShowsTheTimeAloneWhereNothingIsCounted) {
    ASSERT_TRUE(begin());
    lookAfter(milliseconds(999));
    EXPECT_EQ(progress_.text(), QString());
    lookAfter(milliseconds(1));
    EXPECT_EQ(progress_.text(), QStringLiteral("0:01"));
    ASSERT_TRUE(end());
}

TEST_F(ProgressStateTest, IsSpokenOnceASecond) {
    ASSERT_TRUE(begin());
    const QSignalSpy spoken(&progress_, &ProgressState::spokenChanged);
    const QSignalSpy shown(&progress_, &ProgressState::textChanged);
    for (int look = 0; look < 8; ++look) {
        remove(10, "/" + std::to_string(look));
        lookAfter(milliseconds(250));
    }
    EXPECT_EQ(shown.count(), 8);
    EXPECT_EQ(spoken.count(), 3); // In the seconds 0, 1 and 2.
    EXPECT_EQ(progress_.spokenText(), QStringLiteral("80 items · 0:02"));
    EXPECT_EQ(progress_.path(), QStringLiteral("/7"));
    ASSERT_TRUE(end());
}

TEST_F(ProgressStateTest, BeginsAnewWithEachOperation) {
    ASSERT_TRUE(begin());
    remove(5, "/a");
    lookAfter(seconds(2));
    ASSERT_TRUE(end());
    controller_->deleteModel({.name = "n", .source = "LM Studio (GGUF)", .path = home_.path("none")});
    lookAfter(milliseconds(100));
    EXPECT_EQ(progress_.text(), QString());
    ASSERT_TRUE(waitUntilIdle());
}

TEST_F(ProgressStateTest, SaysNothingOfAScan) {
    controller_->scanSystem();
    ASSERT_TRUE(controller_->isBusy());
    lookAfter(seconds(3));
    EXPECT_EQ(progress_.text(), QString());
    ASSERT_TRUE(waitUntilIdle());
    lookAfter(seconds(3));
    EXPECT_EQ(progress_.text(), QString());
}

TEST_F(ProgressStateTest, MakesNamesIntoText) {
    ASSERT_TRUE(begin());
    remove(1, "/a\n\xff");
    lookAfter(milliseconds(250));
    EXPECT_EQ(progress_.path(), QStringLiteral("/a\\n\\xFF"));
    ASSERT_TRUE(end());
}

} // namespace
} // namespace zentrill
