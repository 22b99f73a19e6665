#include "ui/ResultState.h"

#include "UiFixture.h"
#include "ui/WarmPalette.h"

#include <gtest/gtest.h>

namespace zentrill {
namespace {

TEST(ResultStateTextTest, TakesAMessageWithoutErrorsWhole) {
    const QString message = QStringLiteral("Done.\nErrors: none");
    EXPECT_EQ(ResultState::messageText(message), message);
    EXPECT_EQ(ResultState::parsedErrorLines(message), QStringList());
}

TEST(ResultStateTextTest, SplitsAtTheFirstSeparatorOnly) {
    const QString message = QStringLiteral("Body\n\nErrors:\none\n\ntwo\nErrors:\nthree\n");
    EXPECT_EQ(ResultState::messageText(message), QStringLiteral("Body\n"));
    EXPECT_EQ(ResultState::parsedErrorLines(message),
              QStringList({QStringLiteral("one"), QStringLiteral("two"), QStringLiteral("Errors:"),
                           QStringLiteral("three")}));
}

TEST(ResultStateTextTest, HasNoErrorLinesWhenNothingFollowsTheSeparator) {
    EXPECT_EQ(ResultState::messageText(QStringLiteral("Body\nErrors:\n")), QStringLiteral("Body"));
    EXPECT_EQ(ResultState::parsedErrorLines(QStringLiteral("Body\nErrors:\n")), QStringList());
    EXPECT_EQ(ResultState::parsedErrorLines(QStringLiteral("Body\nErrors:\n\n\n")), QStringList());
}

TEST(ResultStateTextTest, TakesOnlyTheWholeSeparator) {
    EXPECT_EQ(ResultState::messageText(QStringLiteral("Errors:\none")), QStringLiteral("Errors:\none"));
    EXPECT_EQ(ResultState::messageText(QStringLiteral("Body\nErrors:one")),
              QStringLiteral("Body\nErrors:one"));
    EXPECT_EQ(ResultState::messageText(QString()), QString());
}

class ResultStateTest : public test::UiFixture {
protected:
    [[nodiscard]] static QStringList lines(QAbstractItemModel* model) {
        QStringList result;
        for (int row = 0; row < model->rowCount(); ++row) {
            result.append(model->data(model->index(row, 0), TextLinesModel::entryRole).toString());
        }
        return result;
    }

    void expectOutcome(const char* icon, const char* label, const QColor& color) const {
        EXPECT_EQ(state_.outcomeIcon(), QString::fromUtf8(icon));
        EXPECT_EQ(state_.outcomeLabel(), QString::fromUtf8(label));
        EXPECT_EQ(state_.outcomeColor(), color);
    }

    WarmPalette palette_;
    ResultState state_{*controller_};
};

TEST_F(ResultStateTest, IsUnknownBeforeAnyResult) {
    expectOutcome("questionmark.circle", "RESULT \u2014 REVIEW DETAILS", palette_.secondary);
    EXPECT_FALSE(state_.hasRetainedPaths());
    EXPECT_EQ(lines(state_.errorLines()), QStringList());
}

TEST_F(ResultStateTest, ShowsAFailure) {
    ASSERT_TRUE(failAnOperation());
    expectOutcome("xmark.circle", "ERRORS", palette_.danger);
    const QString message = controller_->resultAlertMessage();
    EXPECT_EQ(lines(state_.messageLines()).join(QLatin1Char('\n')), ResultState::messageText(message));
    EXPECT_EQ(lines(state_.errorLines()), ResultState::parsedErrorLines(message));
    EXPECT_FALSE(state_.hasRetainedPaths());
}

TEST_F(ResultStateTest, ShowsASuccess) {
    locator_->set("/opt/docker");
    controller_->removeContainer({.id = "c1", .name = "web", .status = "Exited (0) 1 hour ago"});
    ASSERT_TRUE(waitUntilIdle());
    ASSERT_TRUE(controller_->showResultAlert());
    expectOutcome("checkmark.circle.fill", "COMPLETE", palette_.success);
    EXPECT_EQ(lines(state_.errorLines()), QStringList());
}

TEST_F(ResultStateTest, ShowsDataThatRemains) {
    home_.makeFile(".ollama/notes", "mine");
    ASSERT_TRUE(scan());
    controller_->uninstallAppsFromConfirmation({app("Ollama")}, true);
    ASSERT_TRUE(waitUntilIdle());
    ASSERT_EQ(controller_->resultAlertOutcome(), ResultOutcome::dataRemaining)
        << controller_->resultAlertMessage().toStdString();
    expectOutcome("exclamationmark.circle", "DATA REMAINS", palette_.copper);
    EXPECT_TRUE(state_.hasRetainedPaths());
}

TEST_F(ResultStateTest, ShowsMisleadingCharactersVisibly) {
    answer_ = [](const auto&) {
        return test::failed(1, "refused \xE2\x80\xAE"
                               "exe\n");
    };
    locator_->set("/opt/docker");
    controller_->stopContainer({.id = "c1", .name = "web", .status = "Up 3 minutes"});
    ASSERT_TRUE(waitUntilIdle());
    const QString shown = (lines(state_.messageLines()) + lines(state_.errorLines())).join(QLatin1Char('\n'));
    EXPECT_TRUE(shown.contains(QLatin1String("refused \\u202Eexe"))) << shown.toStdString();
}

TEST_F(ResultStateTest, KnowsThePathsThatItsLinesName) {
    home_.makeFile(".gemini/settings.json", "{}");
    home_.makeFile(".ollama/history", "");
    ASSERT_TRUE(scan());
    for (const AppInfo& app : controller_->apps()) {
        controller_->setAppSelected(app.name, app.isDetected);
    }
    controller_->uninstallSelectedApps();
    ASSERT_TRUE(waitUntilIdle());
    const QStringList shown = lines(state_.messageLines());
    std::vector<std::string> paths;
    for (int row = 0; row < shown.size(); ++row) {
        const QByteArray path = state_.retainedPath(row);
        if (!path.isEmpty()) {
            EXPECT_TRUE(shown[row].endsWith(QLatin1String(": ") + QString::fromUtf8(path)))
                << shown[row].toStdString();
            paths.push_back(path.toStdString());
        }
    }
    EXPECT_EQ(paths, (std::vector<std::string>{home_.path(".gemini"), home_.path(".ollama")}));
    EXPECT_EQ(state_.retainedPath(-1), QByteArray());
    EXPECT_EQ(state_.retainedPath(static_cast<int>(shown.size())), QByteArray());
    ASSERT_TRUE(failAnOperation());
    for (int row = 0; row < 5; ++row) {
        EXPECT_EQ(state_.retainedPath(row), QByteArray()) << "of another result";
        EXPECT_FALSE(state_.retainedPath(row).isNull());
    }
}

} // namespace
} // namespace zentrill
