#include "ui/ReviewState.h"

#include "UiFixture.h"
#include "ui/ContentViewState.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace zentrill {
namespace {

class ReviewStateTest : public test::UiFixture {
protected:
    ContentViewState state_{*controller_};
    ReviewState& review_ = *state_.review();

    [[nodiscard]] bool waitForAll() {
        return test::waitUntil([this] { return review_.isShown() && !review_.isComputing(); });
    }

    [[nodiscard]] bool findGemini() {
        home_.makeFile(".gemini/tmp/data", std::string(5000, 'x'));
        if (!scan()) {
            return false;
        }
        controller_->setAppSelected("Gemini", true);
        return true;
    }
};

TEST_F(ReviewStateTest, OpensForTheSelectionAndFollowsTheShield) {
    ASSERT_TRUE(findGemini());
    EXPECT_TRUE(state_.canReviewSelection());
    state_.reviewSelection();
    EXPECT_EQ(review_.title(), QStringLiteral("Review: Gemini"));
    EXPECT_TRUE(review_.isShielded());
    ASSERT_TRUE(waitForAll());
    EXPECT_EQ(review_.going(), QStringLiteral("0 bytes"));
    EXPECT_EQ(review_.rows()->rowCount(), 2);
    controller_->setPreserveCredentials(false);
    EXPECT_TRUE(review_.isComputing());
    EXPECT_EQ(review_.rows()->rowCount(), 2); // They stay in sight until there is more.
    ASSERT_TRUE(waitForAll());
    EXPECT_EQ(review_.going(), QStringLiteral("5 KB"));
    EXPECT_EQ(review_.rows()->rowCount(), 3); // The folder in between goes as well.
    review_.close();
    EXPECT_FALSE(review_.isShown());
    EXPECT_EQ(review_.rows()->rowCount(), 0);
}

TEST_F(ReviewStateTest, ListsMoreOfManyEntriesWhenAsked) {
    for (int number = 0; number < 2'100; ++number) {
        home_.makeFile(".gemini/tmp/" + std::to_string(number));
    }
    ASSERT_TRUE(findGemini());
    state_.reviewSelection();
    EXPECT_FALSE(review_.canListMore()) << "nobody knows what there is";
    ASSERT_TRUE(waitForAll());
    const int label = review_.rows()->roleNames().key("label");
    const auto last = [&] {
        return review_.rows()
            ->data(review_.rows()->index(review_.rows()->rowCount() - 1, 0), label)
            .toString();
    };
    EXPECT_EQ(review_.rows()->rowCount(), 202);
    EXPECT_EQ(last(), QStringLiteral("and 1,901 more"));
    int fewest = review_.rows()->rowCount();
    QObject::connect(&review_, &ReviewState::contentChanged, &review_,
                     [&] { fewest = std::min(fewest, review_.rows()->rowCount()); });
    EXPECT_TRUE(review_.canListMore());
    review_.listMore();
    EXPECT_TRUE(review_.isComputing());
    ASSERT_TRUE(waitForAll());
    EXPECT_EQ(fewest, 202) << "what was listed stays";
    EXPECT_EQ(review_.rows()->rowCount(), 2002);
    EXPECT_EQ(last(), QStringLiteral("and 101 more"));
    review_.listMore();
    ASSERT_TRUE(waitForAll());
    EXPECT_EQ(review_.rows()->rowCount(), 2102);
    EXPECT_FALSE(review_.canListMore());
    review_.listMore();
    EXPECT_FALSE(review_.isComputing());
    review_.close();
    state_.reviewSelection();
    ASSERT_TRUE(waitForAll());
    EXPECT_EQ(review_.rows()->rowCount(), 202) << "a review begins with the first ones";
}

TEST_F(ReviewStateTest, LetsNothingBeAskedForBelowIt) {
    ASSERT_TRUE(findGemini());
    state_.reviewSelection();
    EXPECT_FALSE(state_.acceptsRequests());
    EXPECT_FALSE(state_.canUninstall());
    state_.requestUninstall();
    state_.requestSelfUninstall();
    EXPECT_FALSE(state_.modalShown());
    review_.close();
    state_.requestUninstall();
    EXPECT_TRUE(state_.modalShown());
    state_.reviewSelection();
    EXPECT_FALSE(review_.isShown());
}

TEST_F(ReviewStateTest, IsClosedByAnOperationAndNotOpenedDuringOne) {
    ASSERT_TRUE(findGemini());
    state_.reviewSelection();
    controller_->scanSystem();
    EXPECT_FALSE(review_.isShown());
    state_.reviewSelection();
    EXPECT_FALSE(review_.isShown());
    EXPECT_TRUE(waitUntilIdle());
}

TEST_F(ReviewStateTest, TakesTheRowThatIsMeant) {
    playDocker();
    ASSERT_TRUE(findGemini());
    state_.reviewDockerRow(0); // A heading.
    EXPECT_FALSE(review_.isShown());
    state_.reviewDockerRow(state_.dockerStop(0, 1));
    ASSERT_TRUE(waitForAll());
    EXPECT_EQ(review_.title(), QStringLiteral("Review: web"));
    EXPECT_FALSE(review_.isShielded());
    EXPECT_EQ(review_.going(), QStringLiteral("Not known"));
    review_.close();
    EXPECT_FALSE(state_.canReviewApplication(0)); // Ollama is not there.
    state_.reviewApplication(0);
    state_.reviewModel(0);
    EXPECT_FALSE(review_.isShown());
}

} // namespace
} // namespace zentrill
