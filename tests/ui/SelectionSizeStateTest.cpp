#include "ui/SelectionSizeState.h"

#include "UiFixture.h"
#include "ui/ContentViewState.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace zentrill {
namespace {

class SelectionSizeStateTest : public test::UiFixture {
protected:
    ContentViewState state_{*controller_};
    SelectionSizeState& size_ = *state_.selectionSize();

    [[nodiscard]] bool waitFor(const QString& text) {
        return test::waitUntil([&] { return size_.text() == text; });
    }
};

TEST_F(SelectionSizeStateTest, FollowsTheSelectionAndTheShield) {
    home_.makeFile(".gemini/tmp/data", std::string(5000, 'x'));
    home_.makeFile(".codex/history.jsonl", std::string(1000, 'x'));
    ASSERT_TRUE(scan());
    EXPECT_EQ(size_.text(), QString());
    controller_->setAppSelected("Gemini", true);
    EXPECT_EQ(size_.text(), QString()) << "nobody knows it yet";
    ASSERT_TRUE(waitFor(QStringLiteral("0 bytes would go")));
    controller_->setPreserveCredentials(false);
    EXPECT_EQ(size_.text(), QString()) << "what was true with the shield";
    ASSERT_TRUE(waitFor(QStringLiteral("5 KB would go")));
    controller_->setAppSelected("ChatGPT", true);
    controller_->setAppSelected("Codex Tooling", true);
    ASSERT_TRUE(waitFor(QStringLiteral("6 KB would go")));
    state_.toggleAllApplications();
    state_.toggleAllApplications();
    EXPECT_EQ(size_.text(), QString()) << "nothing is selected";
}

TEST_F(SelectionSizeStateTest, IsFoundOutAnewByAScan) {
    home_.makeFile(".gemini/tmp/data", std::string(5000, 'x'));
    ASSERT_TRUE(scan());
    controller_->setPreserveCredentials(false);
    controller_->setAppSelected("Gemini", true);
    ASSERT_TRUE(waitFor(QStringLiteral("5 KB would go")));
    home_.makeFile(".gemini/tmp/more", std::string(2000, 'x'));
    controller_->scanSystem();
    EXPECT_EQ(size_.text(), QString());
    ASSERT_TRUE(waitUntilIdle());
    ASSERT_TRUE(waitFor(QStringLiteral("7 KB would go")));
}

TEST_F(SelectionSizeStateTest, KeepsNoOperationWaiting) {
    home_.makeFile(".gemini/tmp/data", std::string(5000, 'x'));
    // The thread that is let go may come to an entry when the test is over.
    const auto gate = std::make_shared<test::Gate>();
    engine_ = std::make_shared<SafeDeletionEngine>(FileSystem::shared(), CredentialMatcher(),
                                                   [gate](const std::string& /*path*/) {
                                                       gate->pass();
                                                       return true;
                                                   });
    auto stuck = std::make_unique<UninstallerViewModel>(commands_, engine_, locator_, false, hooks());
    const SelectionSizeState size(*stuck);
    stuck->setPreserveCredentials(false);
    stuck->scanSystem();
    ASSERT_TRUE(test::waitUntil([&] { return !stuck->isBusy(); }));
    stuck->setAppSelected("Gemini", true);
    ASSERT_TRUE(gate->waitForArrival());
    stuck->scanSystem();
    EXPECT_TRUE(test::waitUntil([&] { return !stuck->isBusy(); }));
    EXPECT_EQ(size.text(), QString());
    gate->open();
    // Begun anew after the scan, behind the one that was stuck.
    EXPECT_TRUE(test::waitUntil([&] { return size.text() == QStringLiteral("5 KB would go"); }));
}

} // namespace
} // namespace zentrill
