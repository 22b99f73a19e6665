#include "ui/PathActions.h"

#include "UiFixture.h"
#include "ui/ContentViewState.h"

#include <QClipboard>
#include <QGuiApplication>
#include <gtest/gtest.h>

#include <string>

namespace zentrill {
namespace {

/// What of the rows can be copied. These tests have no message bus; the end-to-end cases have one.
class PathActionsTest : public test::UiFixture {
protected:
    [[nodiscard]] static std::string copied() { return QGuiApplication::clipboard()->text().toStdString(); }

    [[nodiscard]] static int rowOf(const QAbstractItemModel& model, const char* role, const char* value) {
        for (int row = 0; row < model.rowCount(); ++row) {
            if (model.data(model.index(row, 0), model.roleNames().key(role)).toString() ==
                QLatin1String(value)) {
                return row;
            }
        }
        return -1;
    }

    ContentViewState state_{*controller_};
};

TEST_F(PathActionsTest, KnowsWhereToolsAndModelsAre) {
    home_.makeFile(".gemini/settings.json", "{}");
    home_.makeFile(".local/bin/ollama", "#!/bin/sh\n");
    home_.makeDirectory(".ollama");
    home_.makeFile(".lmstudio/models/caf\xE9.gguf", "123");
    ASSERT_TRUE(scan());
    const auto path = [this](const char* name) {
        return state_.applicationPath(rowOf(*state_.applications(), "displayName", name)).toStdString();
    };
    EXPECT_EQ(path("Gemini"), home_.path(".gemini")) << "of what remains";
    EXPECT_EQ(path("Ollama"), home_.path(".local/bin/ollama")) << "installed goes before what remains";
    EXPECT_EQ(path("Hermes"), "");
    EXPECT_EQ(path("no such tool"), "");
    EXPECT_EQ(state_.modelPath(0).toStdString(), home_.path(".lmstudio/models/caf\xE9.gguf"));
    EXPECT_EQ(state_.modelPath(1), QByteArray());
    EXPECT_FALSE(state_.modelPath(1).isNull() || state_.applicationPath(-1).isNull());
}

TEST_F(PathActionsTest, CopiesPathsOrNames) {
    home_.makeFile(".lmstudio/models/foo.gguf", "123");
    playDocker();
    ASSERT_TRUE(scan());
    state_.copyModel(0);
    EXPECT_EQ(copied(), home_.path(".lmstudio/models/foo.gguf"));
    state_.copyModel(7);
    EXPECT_EQ(copied(), home_.path(".lmstudio/models/foo.gguf")) << "no row, and the clipboard stays";
    state_.copyApplication(rowOf(*state_.applications(), "displayName", "Hermes"));
    EXPECT_EQ(copied(), "Hermes");
    const QAbstractItemModel& docker = *state_.dockerRows();
    state_.copyDockerRow(rowOf(docker, "name", "web"));
    EXPECT_EQ(copied(), "web");
    state_.copyDockerRow(rowOf(docker, "name", "web:1"));
    EXPECT_EQ(copied(), "web:1");
    state_.copyDockerRow(rowOf(docker, "name", "Untagged image"));
    EXPECT_EQ(copied(), fullID('b'));
    state_.copyDockerRow(0);
    EXPECT_EQ(copied(), fullID('b')) << "a heading stands for nothing";
}

TEST_F(PathActionsTest, SaysWhatNobodyShows) {
    state_.paths()->look();
    EXPECT_FALSE(state_.paths()->canShow());
    state_.paths()->showInFolder("/home/foo");
    EXPECT_TRUE(test::waitUntil([this] {
        return !controller_->logs().empty() &&
               controller_->logs().back().find("The file manager could not show /home/foo: ") !=
                   std::string::npos;
    }));
}

} // namespace
} // namespace zentrill
