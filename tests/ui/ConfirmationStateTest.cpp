#include "ui/ConfirmationState.h"

#include "UiFixture.h"

#include <gtest/gtest.h>

namespace zentrill {
namespace {

class ConfirmationStateTest : public test::UiFixture {
protected:
    [[nodiscard]] std::string nextCode() {
        ++drawn_;
        if (codes_.size() > 1) {
            std::string code = codes_.front();
            codes_.erase(codes_.begin());
            return code;
        }
        return codes_.front();
    }

    [[nodiscard]] static PendingConfirmation containerRemoval(const std::string& name = "web") {
        return {
            DockerContainer{.id = "c1", .name = name, .image = "web:1", .status = "Exited (0) 1 hour ago"}};
    }

    /// Whether nothing was started.
    [[nodiscard]] bool nothingRan() const { return !controller_->isBusy() && commands_->calls().empty(); }

    std::vector<std::string> codes_{"00412907"};
    int drawn_ = 0;
    ConfirmationState state_{*controller_, [this] { return nextCode(); }};
};

TEST_F(ConfirmationStateTest, ShowsNothingAtFirst) {
    EXPECT_FALSE(state_.isPending());
    EXPECT_TRUE(state_.canPresent());
    EXPECT_EQ(state_.title(), QString());
    EXPECT_EQ(state_.message(), QString());
    EXPECT_EQ(state_.actionTitle(), QString());
    EXPECT_EQ(state_.confirmationCode(), QString());
    EXPECT_FALSE(state_.matches());
}

TEST_F(ConfirmationStateTest, PresentsAnActionWithItsCode) {
    int changes = 0;
    QObject::connect(&state_, &ConfirmationState::pendingChanged, &state_, [&] { ++changes; });
    state_.presentConfirmation(containerRemoval());
    EXPECT_EQ(changes, 1);
    EXPECT_TRUE(state_.isPending());
    EXPECT_EQ(state_.title(), QStringLiteral("Delete Container?"));
    EXPECT_EQ(state_.message(),
              QStringLiteral("Permanently delete container web? It will be stopped first if it is running."));
    EXPECT_EQ(state_.actionTitle(), QStringLiteral("Delete"));
    EXPECT_EQ(state_.confirmationCode(), QStringLiteral("00412907"));
    EXPECT_EQ(state_.confirmationInput(), QString());
    EXPECT_FALSE(state_.canPresent());
}

TEST_F(ConfirmationStateTest, DrawsAgainUntilTheCodeDiffersFromTheLast) {
    codes_ = {"11111111", "11111111", "11111111", "22222222", "11111111"};
    state_.presentConfirmation(containerRemoval());
    EXPECT_EQ(state_.confirmationCode(), QStringLiteral("11111111"));
    state_.dismissModal();
    state_.presentConfirmation(containerRemoval());
    EXPECT_EQ(state_.confirmationCode(), QStringLiteral("22222222"));
    EXPECT_EQ(drawn_, 4);
    state_.dismissModal();
    // Only the code before matters.
    state_.presentConfirmation(containerRemoval());
    EXPECT_EQ(state_.confirmationCode(), QStringLiteral("11111111"));
}

TEST_F(ConfirmationStateTest, DrawsEightDigitsByItself) {
    ConfirmationState state(*controller_);
    state.presentConfirmation(containerRemoval());
    EXPECT_THAT(state.confirmationCode().toStdString(), ::testing::MatchesRegex("[0-9]{8}"));
}

TEST_F(ConfirmationStateTest, PresentsNothingWhileAnotherIsPending) {
    state_.presentConfirmation(containerRemoval("web"));
    state_.setConfirmationInput(QStringLiteral("0041"));
    state_.presentConfirmation(containerRemoval("other"));
    EXPECT_TRUE(state_.message().contains(QLatin1String("web")));
    EXPECT_EQ(state_.confirmationInput(), QStringLiteral("0041"));
    EXPECT_EQ(drawn_, 1);
}

TEST_F(ConfirmationStateTest, PresentsNothingWhileAnOperationRuns) {
    controller_->scanSystem();
    ASSERT_TRUE(controller_->isBusy());
    EXPECT_FALSE(state_.canPresent());
    state_.presentConfirmation(containerRemoval());
    EXPECT_FALSE(state_.isPending());
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_TRUE(state_.canPresent());
}

TEST_F(ConfirmationStateTest, PresentsNothingWhileAResultIsShown) {
    ASSERT_TRUE(failAnOperation());
    EXPECT_FALSE(state_.canPresent());
    state_.presentConfirmation(containerRemoval());
    EXPECT_FALSE(state_.isPending());
    state_.dismissModal();
    EXPECT_FALSE(controller_->showResultAlert());
    EXPECT_TRUE(state_.canPresent());
}

TEST_F(ConfirmationStateTest, NeverConfirmsAWrongCode) {
    state_.presentConfirmation(containerRemoval());
    for (const char* input : {"", "0041290", "00412908", "412907", "70921400"}) {
        state_.setConfirmationInput(QString::fromLatin1(input));
        EXPECT_FALSE(state_.matches()) << input;
        state_.confirm();
        EXPECT_TRUE(state_.isPending()) << input;
        EXPECT_TRUE(nothingRan()) << input;
    }
}

TEST_F(ConfirmationStateTest, KeepsOnlyEightDigitsOfWhatIsTyped) {
    state_.presentConfirmation(containerRemoval());
    state_.setConfirmationInput(QString::fromUtf8("0 0a4\xEF\xBC\x91"
                                                  "129079"));
    EXPECT_EQ(state_.confirmationInput(), QStringLiteral("00412907"));
    EXPECT_TRUE(state_.matches());
}

TEST_F(ConfirmationStateTest, TakesNoInputWhileNothingIsPending) {
    state_.setConfirmationInput(QStringLiteral("12345678"));
    EXPECT_EQ(state_.confirmationInput(), QString());
    state_.confirm();
    EXPECT_TRUE(nothingRan());
}

TEST_F(ConfirmationStateTest, StartsTheActionOnceTheCodeMatches) {
    locator_->set("/opt/docker");
    state_.presentConfirmation(containerRemoval());
    state_.setConfirmationInput(QStringLiteral("00412907"));
    state_.confirm();
    EXPECT_FALSE(state_.isPending());
    EXPECT_EQ(state_.confirmationInput(), QString());
    EXPECT_EQ(controller_->operationDescription(), QStringLiteral("Removing web"));
    state_.confirm();
    ASSERT_TRUE(waitUntilIdle());
    const auto calls = commands_->calls();
    const auto removals = std::ranges::count_if(
        calls, [](const auto& call) { return !call.arguments.empty() && call.arguments.back() == "c1"; });
    EXPECT_EQ(removals, 1);
}

TEST_F(ConfirmationStateTest, ForgetsEverythingWhenDismissed) {
    state_.presentConfirmation(containerRemoval());
    state_.setConfirmationInput(QStringLiteral("00412907"));
    state_.dismissModal();
    EXPECT_FALSE(state_.isPending());
    EXPECT_EQ(state_.confirmationCode(), QString());
    EXPECT_EQ(state_.confirmationInput(), QString());
    EXPECT_FALSE(state_.matches());
    state_.confirm();
    EXPECT_TRUE(nothingRan());
    codes_ = {"22222222"};
    state_.presentConfirmation(containerRemoval());
    EXPECT_EQ(state_.confirmationInput(), QString());
}

TEST_F(ConfirmationStateTest, ConfirmsTheRecordsAsTheyWereWhenItOpened) {
    AppInfo chosen = controller_->apps().front();
    chosen.isDetected = chosen.isSelected = true;
    state_.presentConfirmation({PendingConfirmation::Apps{.apps = {chosen}, .preserveCredentials = true}});
    const QString message = state_.message();
    controller_->setAppSelected(controller_->apps().back().name, true);
    controller_->setPreserveCredentials(false);
    EXPECT_EQ(state_.message(), message);
    EXPECT_EQ(state_.title(), QStringLiteral("Uninstall 1 Application?"));
}

TEST_F(ConfirmationStateTest, ShowsMisleadingNamesVisibly) {
    state_.presentConfirmation(containerRemoval("we\nb\xFF"));
    EXPECT_TRUE(state_.message().contains(QLatin1String("container we\\nb\\xFF?")));
}

} // namespace
} // namespace zentrill
