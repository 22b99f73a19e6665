#include "controller/review/ReviewWorker.h"

#include "ControllerFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace zentrill {
namespace {

class ReviewWorkerTest : public test::ControllerFixture {
protected:
    ReviewWorkerTest() { start(); }

    void review(ReviewSubject subject, SafetyShield shield = SafetyShield::on) {
        shown_.clear();
        controller_->reviews().start(std::move(subject), shield,
                                     [this](const ReviewContent& content) { shown_.push_back(content); });
    }

    [[nodiscard]] bool waitForAll() {
        return test::waitUntil([this] { return !shown_.empty() && shown_.back().complete; });
    }

    [[nodiscard]] QString reasonOf(const QString& text) const {
        const auto& rows = shown_.back().rows;
        const auto found = std::ranges::find(rows, text, &ReviewRow::text);
        return found == rows.end() ? QString() : found->reason;
    }

    std::vector<ReviewContent> shown_;
};

TEST_F(ReviewWorkerTest, ShowsWhatGoesAndStaysWithTheShieldAndWithout) {
    home_.makeFile(".gemini/oauth_creds.json", "secret");
    home_.makeFile(".gemini/tmp/data", std::string(5000, 'x'));
    review(std::vector{app("Gemini")});
    ASSERT_TRUE(waitForAll());
    EXPECT_EQ(reasonOf(QStringLiteral("tmp/data")), QStringLiteral("Kept: uncertain data"));
    EXPECT_EQ(shown_.back().going, QStringLiteral("0 bytes"));
    review(std::vector{app("Gemini")}, SafetyShield::off);
    ASSERT_TRUE(waitForAll());
    EXPECT_EQ(reasonOf(QStringLiteral("tmp/data")), QStringLiteral("Goes"));
    EXPECT_EQ(shown_.back().going, QStringLiteral("5 KB"));
    EXPECT_FALSE(controller_->reviews().isRunning());
    EXPECT_TRUE(std::filesystem::exists(home_.path() + "/.gemini/tmp/data"));
}

TEST_F(ReviewWorkerTest, CountsOnceWhatTwoToolsShare) {
    home_.makeFile(".codex/history.jsonl", "1234");
    review(std::vector{app("ChatGPT"), app("Codex Tooling")}, SafetyShield::off);
    ASSERT_TRUE(waitForAll());
    EXPECT_EQ(shown_.back().going, QStringLiteral("4 bytes"));
    EXPECT_THAT(shown_.back().rows,
                testing::Contains(testing::Field(&ReviewRow::kind, ReviewRow::Kind::heading)));
}

TEST_F(ReviewWorkerTest, EndsWhenAnOperationBegins) {
    // One more look for each entry than the test lets through: only the end of the review lets go of it.
    struct Gate {
        std::atomic<bool> asked{false};
        std::atomic<bool> open{false};
    };

    // The thread that is let go may come to an entry when the test is over.
    const auto gate = std::make_shared<Gate>();
    engine_ = std::make_shared<SafeDeletionEngine>(FileSystem::shared(), CredentialMatcher(),
                                                   [gate](const std::string& /*path*/) {
                                                       gate->asked = true;
                                                       gate->open.wait(false);
                                                       return false;
                                                   });
    start();
    home_.makeFile(".gemini/a");
    home_.makeFile(".gemini/b");
    review(std::vector{app("Gemini")}, SafetyShield::off);
    ASSERT_TRUE(test::waitUntil([&] { return gate->asked.load(); }));
    EXPECT_TRUE(controller_->reviews().isRunning());
    controller_->scanSystem();
    EXPECT_FALSE(controller_->reviews().isRunning());
    // The review is still stuck, and the operation goes to its end.
    ASSERT_TRUE(waitUntilIdle());
    shown_.clear();
    gate->open = true;
    gate->open.notify_all();
    ASSERT_TRUE(settleLog());
    EXPECT_TRUE(shown_.empty());
}

} // namespace
} // namespace zentrill
