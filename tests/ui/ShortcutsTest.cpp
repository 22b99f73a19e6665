#include "ui/Shortcuts.h"

#include "UiFixture.h"
#include "ui/ContentViewState.h"

#include <QKeyEvent>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace zentrill {
namespace {

std::optional<ShortcutAction> actionOf(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    return Shortcuts::actionOf(QKeyEvent(QEvent::KeyPress, key, modifiers));
}

TEST(ShortcutsTest, KnowsItsKeys) {
    EXPECT_EQ(actionOf(Qt::Key_F5), ShortcutAction::scan);
    EXPECT_EQ(actionOf(Qt::Key_R, Qt::ControlModifier), ShortcutAction::scan);
    EXPECT_EQ(actionOf(Qt::Key_1, Qt::ControlModifier), ShortcutAction::showApplications);
    EXPECT_EQ(actionOf(Qt::Key_2, Qt::ControlModifier), ShortcutAction::showModels);
    EXPECT_EQ(actionOf(Qt::Key_3, Qt::ControlModifier), ShortcutAction::showDocker);
    EXPECT_EQ(actionOf(Qt::Key_4, Qt::ControlModifier), ShortcutAction::showConsole);
    EXPECT_EQ(actionOf(Qt::Key_A, Qt::ControlModifier), ShortcutAction::toggleAllApplications);
    EXPECT_EQ(actionOf(Qt::Key_F, Qt::ControlModifier), ShortcutAction::find);
    EXPECT_EQ(actionOf(Qt::Key_F3), ShortcutAction::findNext);
    EXPECT_EQ(actionOf(Qt::Key_G, Qt::ControlModifier), ShortcutAction::findNext);
    EXPECT_EQ(actionOf(Qt::Key_F3, Qt::ShiftModifier), ShortcutAction::findPrevious);
    EXPECT_EQ(actionOf(Qt::Key_G, Qt::ControlModifier | Qt::ShiftModifier), ShortcutAction::findPrevious);
    EXPECT_EQ(actionOf(Qt::Key_Q, Qt::ControlModifier), ShortcutAction::close);
    EXPECT_EQ(actionOf(Qt::Key_W, Qt::ControlModifier), ShortcutAction::close);
    EXPECT_EQ(actionOf(Qt::Key_F1), ShortcutAction::showShortcuts);
}

TEST(ShortcutsTest, TakesTheNumberPadAndTheShiftOfAQuestionMark) {
    EXPECT_EQ(actionOf(Qt::Key_2, Qt::ControlModifier | Qt::KeypadModifier), ShortcutAction::showModels);
    EXPECT_EQ(actionOf(Qt::Key_Question), ShortcutAction::showShortcuts);
    EXPECT_EQ(actionOf(Qt::Key_Question, Qt::ShiftModifier), ShortcutAction::showShortcuts);
}

TEST(ShortcutsTest, LeavesOtherKeysAlone) {
    EXPECT_EQ(actionOf(Qt::Key_1), std::nullopt);
    EXPECT_EQ(actionOf(Qt::Key_R), std::nullopt);
    EXPECT_EQ(actionOf(Qt::Key_1, Qt::ControlModifier | Qt::ShiftModifier), std::nullopt);
    EXPECT_EQ(actionOf(Qt::Key_5, Qt::ControlModifier), std::nullopt);
    EXPECT_EQ(actionOf(Qt::Key_Return), std::nullopt);
    EXPECT_EQ(actionOf(Qt::Key_Delete), std::nullopt);
}

TEST(ShortcutsTest, GivesNoKeyToTwoActions) {
    QList<QKeySequence> seen;
    for (const Shortcut& shortcut : Shortcuts::all()) {
        EXPECT_FALSE(shortcut.keys.isEmpty()) << shortcut.purpose.toStdString();
        for (const QKeySequence& key : shortcut.keys) {
            EXPECT_FALSE(seen.contains(key)) << key.toString().toStdString();
            seen.append(key);
        }
    }
}

TEST(ShortcutsTest, SaysThemAll) {
    EXPECT_EQ(Shortcuts::keyTexts().size(), Shortcuts::purposes().size());
    EXPECT_GT(Shortcuts::purposes().size(), static_cast<qsizetype>(Shortcuts::all().size()));
    EXPECT_FALSE(Shortcuts::keyTexts().contains(QString()));
    EXPECT_EQ(Shortcuts::paneKeys(1),
              QKeySequence(Qt::ControlModifier | Qt::Key_2).toString(QKeySequence::NativeText));
    EXPECT_EQ(Shortcuts::paneKeys(4), QString());
    EXPECT_EQ(Shortcuts::paneKeys(-1), QString());
}

class ShortcutActionsTest : public test::UiFixture {
protected:
    [[nodiscard]] std::vector<std::string> selected() const {
        std::vector<std::string> names;
        for (const AppInfo& app : controller_->apps()) {
            if (app.isSelected) {
                names.push_back(app.name);
            }
        }
        return names;
    }

    ContentViewState state_{*controller_};
};

TEST_F(ShortcutActionsTest, SelectsAllThatWasFoundAndThenNone) {
    home_.makeDirectory(".ollama");
    home_.makeDirectory(".lmstudio");
    ASSERT_TRUE(scan());
    controller_->setAppSelected("Ollama", true);
    state_.perform(ShortcutAction::toggleAllApplications);
    EXPECT_EQ(selected(), (std::vector<std::string>{"Ollama", "LM Studio"}));
    state_.perform(ShortcutAction::toggleAllApplications);
    EXPECT_EQ(selected(), std::vector<std::string>());
    // What is not in sight is not selected.
    state_.setSelectedTab(QStringLiteral("models"));
    state_.perform(ShortcutAction::toggleAllApplications);
    EXPECT_EQ(selected(), std::vector<std::string>());
}

TEST_F(ShortcutActionsTest, ShowsThePanes) {
    QSignalSpy entered(&state_, &ContentViewState::paneEntered);
    state_.perform(ShortcutAction::showConsole);
    EXPECT_EQ(state_.selectedTab(), QStringLiteral("console"));
    state_.perform(ShortcutAction::showDocker);
    EXPECT_EQ(state_.selectedTab(), QStringLiteral("containers"));
    state_.perform(ShortcutAction::showModels);
    EXPECT_EQ(state_.selectedTab(), QStringLiteral("models"));
    state_.perform(ShortcutAction::showApplications);
    EXPECT_EQ(state_.selectedTab(), QStringLiteral("apps"));
    EXPECT_EQ(entered.count(), 4);
}

TEST_F(ShortcutActionsTest, ScansOnceAtATime) {
    state_.perform(ShortcutAction::scan);
    EXPECT_TRUE(controller_->isScanning());
    state_.perform(ShortcutAction::scan);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_TRUE(std::ranges::none_of(controller_->logs(), [](const std::string& line) {
        return line.find("Ignored request") != std::string::npos;
    }));
}

TEST_F(ShortcutActionsTest, DoesNothingBelowAModal) {
    home_.makeDirectory(".ollama");
    ASSERT_TRUE(scan());
    state_.perform(ShortcutAction::showShortcuts);
    EXPECT_TRUE(state_.shortcutsShown());
    state_.requestSelfUninstall();
    ASSERT_TRUE(state_.modalShown());
    EXPECT_FALSE(state_.shortcutsShown()) << "a modal lies on top alone";
    QSignalSpy closing(&state_, &ContentViewState::closeRequested);
    const QString input = state_.confirmation()->confirmationInput();
    for (const Shortcut& shortcut : Shortcuts::all()) {
        state_.perform(shortcut.action);
    }
    EXPECT_EQ(closing.count(), 0);
    EXPECT_TRUE(state_.confirmation()->isPending());
    EXPECT_EQ(state_.confirmation()->confirmationInput(), input);
    EXPECT_EQ(state_.selectedTab(), QStringLiteral("apps"));
    EXPECT_EQ(selected(), std::vector<std::string>());
    EXPECT_FALSE(controller_->isBusy());
    EXPECT_FALSE(state_.shortcutsShown());
    state_.confirmation()->dismissModal();
    state_.perform(ShortcutAction::close);
    EXPECT_EQ(closing.count(), 1);
}

TEST_F(ShortcutActionsTest, ShowsAndHidesTheList) {
    state_.perform(ShortcutAction::showShortcuts);
    EXPECT_TRUE(state_.shortcutsShown());
    state_.perform(ShortcutAction::showShortcuts);
    EXPECT_FALSE(state_.shortcutsShown());
    state_.perform(ShortcutAction::showShortcuts);
    state_.perform(ShortcutAction::showModels);
    EXPECT_FALSE(state_.shortcutsShown()) << "whoever goes elsewhere is done with it";
}

} // namespace
} // namespace zentrill
