#include "ui/RowNotes.h"

#include "UiFixture.h"
#include "ui/ContentViewState.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

namespace zentrill {
namespace {

class RowNotesTest : public test::UiFixture {
protected:
    ContentViewState state_{*controller_};
    RowNotes& notes_ = *state_.rowNotes();

    /// An Ollama model of blobs of 3000 bytes each, named by one letter.
    void makeModel(const std::string& tag, const std::string& blobs) {
        std::string layers;
        for (const char letter : blobs) {
            const std::string digest(64, letter);
            layers.append(layers.empty() ? "" : ",")
                .append(R"({"digest":"sha256:)" + digest + R"(","size":3000})");
            home_.makeFile(".ollama/models/blobs/sha256-" + digest, std::string(3000, 'x'));
        }
        home_.makeFile(".ollama/models/manifests/registry.ollama.ai/library/llama/" + tag,
                       R"({"config":{"digest":"sha256:0","size":0},"layers":[)" + layers + "]}");
    }

    void makeHubModel(const std::string& name, const std::string& link) {
        const std::string folder = ".cache/huggingface/hub/models--org--" + name;
        home_.makeFile(folder + "/refs/main", "c0ffee");
        home_.makeDirectory(folder + "/snapshots");
        std::filesystem::create_symlink(link, home_.path(folder + "/snapshots/model"));
    }

    [[nodiscard]] int row(const std::string& name) const {
        const auto& all = controller_->localModels();
        return static_cast<int>(std::ranges::find(all, name, &LocalModel::name) - all.begin());
    }

    [[nodiscard]] int applicationRow(const std::string& name) const {
        const auto& all = controller_->apps();
        return static_cast<int>(std::ranges::find(all, name, &AppInfo::name) - all.begin());
    }

    /// The note of that model once it was found out.
    [[nodiscard]] QString found(const std::string& name) {
        const int before = notes_.revision();
        notes_.wantModel(row(name));
        EXPECT_TRUE(test::waitUntil([&] { return notes_.revision() > before; }));
        return notes_.model(row(name));
    }
};

TEST_F(RowNotesTest, NameTheModelsThatShareBlobs) {
    makeModel("8b", "ab");
    makeModel("latest", "ac");
    makeModel("own", "d");
    ASSERT_TRUE(scan());
    EXPECT_EQ(notes_.model(row("llama:8b")), QString()) << "nobody has asked";
    const QString note = found("llama:8b");
    EXPECT_TRUE(note.startsWith(QStringLiteral("Deleting it frees "))) << note.toStdString();
    EXPECT_TRUE(note.endsWith(QStringLiteral("\n3 KB of it stay, shared with llama:latest.")))
        << note.toStdString();
    EXPECT_EQ(found("llama:own"), QString());
}

TEST_F(RowNotesTest, SayWhatLiesElsewhere) {
    home_.makeFile("weights/model", std::string(7000, 'x'));
    makeHubModel("linked", home_.path("weights/model"));
    makeHubModel("own", "../refs/main");
    ASSERT_TRUE(scan());
    EXPECT_TRUE(found("org/linked")
                    .endsWith(QStringLiteral("\n7 KB lie elsewhere, behind links in its folder, and stay.")));
    EXPECT_EQ(found("org/own"), QString());
}

TEST_F(RowNotesTest, AreForgottenByAnOperation) {
    makeModel("8b", "a");
    makeModel("latest", "a");
    ASSERT_TRUE(scan());
    EXPECT_NE(found("llama:8b"), QString());
    controller_->scanSystem();
    EXPECT_EQ(notes_.model(row("llama:8b")), QString());
    notes_.wantModel(row("llama:8b"));
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(notes_.model(row("llama:8b")), QString()) << "asked for while something ran";
    EXPECT_NE(found("llama:8b"), QString());
}

TEST_F(RowNotesTest, AreFoundOutForTheLastTwoThatWereWanted) {
    const int count = 6;
    for (int number = 0; number < count; ++number) {
        makeModel(std::to_string(number), "a");
    }
    ASSERT_TRUE(scan());
    for (int number = 0; number < count; ++number) {
        notes_.wantModel(number);
    }
    ASSERT_TRUE(test::waitUntil(
        [&] { return !notes_.model(count - 1).isEmpty() && !notes_.model(count - 2).isEmpty(); }));
    EXPECT_EQ(notes_.model(0), QString());
}

TEST_F(RowNotesTest, TellWhatRemainsAndHowMuch) {
    home_.makeFile(".ollama/history", std::string(1500, 'x'));
    home_.makeFile(".ollama/id_ed25519", std::string(500, 'x'));
    ASSERT_TRUE(scan());
    const int row = applicationRow("Ollama");
    const QString paths = QStringLiteral("What remains:\n") + QString::fromStdString(home_.path(".ollama"));
    EXPECT_EQ(notes_.application(row), paths);
    EXPECT_EQ(notes_.application(row + 1), QString());
    EXPECT_EQ(notes_.application(-1), QString());
    EXPECT_EQ(notes_.application(99), QString());
    for (const int each : {row, row + 1, -1, 99}) {
        notes_.wantApplication(each);
    }
    EXPECT_TRUE(
        test::waitUntil([&] { return notes_.application(row) == paths + QStringLiteral(" · 2 KB"); }));
    std::filesystem::remove_all(home_.path(".ollama"));
    ASSERT_TRUE(scan());
    EXPECT_EQ(notes_.application(row), QString());
}

} // namespace
} // namespace zentrill
