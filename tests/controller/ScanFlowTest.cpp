#include "ControllerFixture.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace zentrill {
namespace {

using test::ControllerFixture;
using test::FakeCommandRunner;
using test::waitUntil;
using ::testing::Contains;
using ::testing::ElementsAre;

class ScanFlowTest : public ControllerFixture {
protected:
    [[nodiscard]] bool scan() {
        controller_->scanSystem();
        return waitUntilIdle();
    }

    /// Answers like the `docker` tool with one running container that uses the first of two images.
    void playDocker() {
        locator_->set("/opt/docker");
        answer_ = [this](const FakeCommandRunner::Call& call) {
            const std::string command = ::testing::PrintToString(call.arguments);
            if (daemonDown_ && command.find("version") != std::string::npos) {
                return test::failed(1, "Cannot connect to the Docker daemon.\n");
            }
            if (command.find("show") != std::string::npos) {
                return test::ok("desktop\n");
            }
            if (command.find("image") != std::string::npos) {
                return test::ok(R"({"ID":"sha256:)" + std::string(64, 'a') +
                                R"(","Repository":"web","Tag":"1","Size":"10MB"})" + "\n" + extraImageLine_ +
                                "\n" + R"({"ID":"sha256:)" + std::string(64, 'b') +
                                R"(","Repository":"<none>","Tag":"<none>","Size":"2GB"})" + "\n");
            }
            if (command.find("inspect") != std::string::npos) {
                return test::ok("sha256:" + std::string(64, 'a') + "\n");
            }
            if (command.find("container") != std::string::npos) {
                return test::ok(R"({"ID":"c1","Names":"web","Image":"web:1","Status":"Up 3 minutes"})"
                                "\n");
            }
            return test::ok("24.0\n");
        };
    }

    std::atomic<bool> daemonDown_ = false;
    std::string extraImageLine_;
};

TEST_F(ScanFlowTest, AsksDockerOnceTheWindowShows) {
    std::atomic<int> waits = 0;
    std::atomic<bool> dockerWasAsked = false;
    awaitFirstFrame_ = [&] { waits += dockerWasAsked ? 0 : 1; };
    locator_->set("/opt/docker");
    answer_ = [&](const FakeCommandRunner::Call&) {
        dockerWasAsked = true;
        return test::failed(1, "no context\n");
    };
    start(true);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_TRUE(dockerWasAsked);
    EXPECT_EQ(waits, 1);
}

TEST_F(ScanFlowTest, LogsWhatItFindsAndCountsLeftoverDataAsFound) {
    start();
    home_.makeExecutable(".local/bin/ollama", "");
    home_.makeDirectory(".ollama");
    home_.makeDirectory(".lmstudio");
    ASSERT_TRUE(scan());

    EXPECT_THAT(
        messages(),
        ElementsAre("Starting system scan for applications, models, and containers...",
                    "Found software: Ollama (Desktop Application)",
                    "Found remaining configuration/data for LM Studio; no installation executable was "
                    "detected.",
                    "Scan completed: 2 applications, 0 models, 0 Docker containers, and 0 Docker images."));
    EXPECT_TRUE(app("Ollama").isDetected);
    EXPECT_FALSE(app("Ollama").hasResidualData);
    EXPECT_TRUE(app("LM Studio").isDetected);
    EXPECT_TRUE(app("LM Studio").hasResidualData);
    EXPECT_FALSE(app("Claude").isDetected);
    EXPECT_FALSE(controller_->showResultAlert());
}

TEST_F(ScanFlowTest, NamesATerminalToolByItsDisplayNameAndCategory) {
    start();
    home_.makeExecutable(".local/bin/claude", "");
    ASSERT_TRUE(scan());
    EXPECT_EQ(messages().at(1), "Found software: Claude Code (CLI) (Terminal / CLI Tool)");
}

TEST_F(ScanFlowTest, KeepsTheSelectionOfWhatStaysAndDropsThatOfWhatIsGone) {
    start();
    home_.makeDirectory(".ollama");
    home_.makeDirectory(".lmstudio");
    ASSERT_TRUE(scan());
    controller_->setAppSelected("Ollama", true);
    controller_->setAppSelected("LM Studio", true);
    controller_->setAppSelected("Claude", true);
    std::filesystem::remove_all(home_.path(".ollama"));
    ASSERT_TRUE(scan());
    EXPECT_FALSE(app("Ollama").isSelected);
    EXPECT_FALSE(app("Ollama").isDetected);
    EXPECT_TRUE(app("LM Studio").isSelected);
    EXPECT_FALSE(app("Claude").isSelected);
}

TEST_F(ScanFlowTest, KeepsASelectionMadeWhileItRuns) {
    start();
    home_.makeDirectory(".ollama");
    home_.makeDirectory(".lmstudio");
    ASSERT_TRUE(scan());
    controller_->setAppSelected("Ollama", true);
    controller_->scanSystem();
    controller_->setAppSelected("Ollama", false);
    controller_->setAppSelected("LM Studio", true);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_FALSE(app("Ollama").isSelected);
    EXPECT_TRUE(app("LM Studio").isSelected);
}

TEST_F(ScanFlowTest, ListsModelsStoreByStore) {
    start();
    home_.makeFile(".ollama/models/manifests/registry.ollama.ai/library/llama3/latest",
                   R"({"config":{"size":512},"layers":[{"size":1000},{"size":2000}]})");
    home_.makeFile(".cache/huggingface/hub/models--org--name/blob", "12345");
    home_.makeFile(".lmstudio/models/pub/foo.gguf", "123");
    ASSERT_TRUE(scan());

    ASSERT_EQ(controller_->localModels().size(), 3U);
    EXPECT_EQ(controller_->localModels().at(0).name, "llama3:latest");
    EXPECT_EQ(controller_->localModels().at(0).sizeBytes, 3512);
    EXPECT_EQ(controller_->localModels().at(1).name, "org/name");
    EXPECT_EQ(controller_->localModels().at(2).name, "pub/foo.gguf");
    const std::vector<std::string> lines = messages();
    EXPECT_THAT(
        std::vector<std::string>(lines.end() - 4, lines.end()),
        ElementsAre("Scanning Ollama models...", "Scanning HuggingFace models...",
                    "Scanning LM Studio models...",
                    "Scan completed: 2 applications, 3 models, 0 Docker containers, and 0 Docker images."));
}

TEST_F(ScanFlowTest, PublishesTheDockerInventory) {
    playDocker();
    start();
    ASSERT_TRUE(scan());
    ASSERT_EQ(controller_->containers().size(), 1U);
    EXPECT_EQ(controller_->containers().at(0).name, "web");
    ASSERT_EQ(controller_->dockerImages().size(), 2U);
    EXPECT_EQ(controller_->dockerImages().at(0).usage, DockerImageUsage::inUse);
    EXPECT_EQ(controller_->dockerImages().at(1).usage, DockerImageUsage::unused);
    EXPECT_TRUE(controller_->isDockerInstalled());
    EXPECT_TRUE(controller_->dockerDaemonRunning());
    EXPECT_TRUE(controller_->dockerImageWarning().isNull());
    EXPECT_EQ(controller_->dockerStatusMessage(),
              QStringLiteral("Docker is available on connection 'desktop'."));
    EXPECT_EQ(messages().back(),
              "Scan completed: 0 applications, 0 models, 1 Docker containers, and 2 Docker images.");
    EXPECT_THAT(messages(), ::testing::Not(Contains(::testing::HasSubstr("Docker is available"))));
}

TEST_F(ScanFlowTest, PublishesTheImageWarningAndTakesItBack) {
    playDocker();
    extraImageLine_ = "not an image";
    start();
    ASSERT_TRUE(scan());
    EXPECT_EQ(controller_->dockerImageWarning(), QStringLiteral("Ignored 1 malformed image record."));
    extraImageLine_.clear();
    ASSERT_TRUE(scan());
    EXPECT_TRUE(controller_->dockerImageWarning().isNull());
}

TEST_F(ScanFlowTest, EmptiesTheDockerListsWhenTheDaemonGoesAway) {
    playDocker();
    extraImageLine_ = "not an image";
    start();
    ASSERT_TRUE(scan());
    daemonDown_ = true;
    ASSERT_TRUE(scan());
    EXPECT_TRUE(controller_->containers().empty());
    EXPECT_TRUE(controller_->dockerImages().empty());
    EXPECT_TRUE(controller_->dockerImageWarning().isNull());
    EXPECT_TRUE(controller_->isDockerInstalled());
    EXPECT_FALSE(controller_->dockerDaemonRunning());
    EXPECT_EQ(
        controller_->dockerStatusMessage(),
        QStringLiteral("Docker is installed, but its daemon is unavailable: Docker CLI is installed, but "
                       "connection 'desktop' is unavailable. Start Docker Desktop (or restore that "
                       "connection), then choose Scan System. Cannot connect to the Docker daemon."));
}

TEST_F(ScanFlowTest, EmptiesTheDockerListsWhenTheToolGoesAway) {
    playDocker();
    start();
    ASSERT_TRUE(scan());
    locator_->set(std::nullopt);
    ASSERT_TRUE(scan());
    EXPECT_TRUE(controller_->containers().empty());
    EXPECT_TRUE(controller_->dockerImages().empty());
    EXPECT_FALSE(controller_->isDockerInstalled());
    EXPECT_FALSE(controller_->dockerDaemonRunning());
    EXPECT_EQ(controller_->dockerStatusMessage(),
              QStringLiteral("Docker CLI is not installed or is not available in PATH."));
}

TEST_F(ScanFlowTest, AnnouncesOnlyWhatChanged) {
    playDocker();
    home_.makeDirectory(".ollama");
    home_.makeFile(".lmstudio/models/foo.gguf", "123");
    start();
    int changes = 0;
    for (const auto signal :
         {&UninstallerViewModel::appsChanged, &UninstallerViewModel::localModelsChanged,
          &UninstallerViewModel::containersChanged, &UninstallerViewModel::dockerImagesChanged,
          &UninstallerViewModel::isDockerInstalledChanged, &UninstallerViewModel::dockerDaemonRunningChanged,
          &UninstallerViewModel::dockerStatusMessageChanged, &UninstallerViewModel::dockerImageWarningChanged,
          &UninstallerViewModel::canCancelOperationChanged, &UninstallerViewModel::showResultAlertChanged}) {
        QObject::connect(controller_.get(), signal, [&changes] { ++changes; });
    }
    ASSERT_TRUE(scan());
    EXPECT_EQ(changes, 7);
    ASSERT_TRUE(scan());
    EXPECT_EQ(changes, 7);
}

TEST_F(ScanFlowTest, IsOverOnlyWhenEverythingIsPublished) {
    playDocker();
    home_.makeDirectory(".ollama");
    start();
    int ends = 0;
    QObject::connect(controller_.get(), &UninstallerViewModel::isBusyChanged, [this, &ends] {
        if (controller_->isBusy()) {
            return;
        }
        ++ends;
        EXPECT_TRUE(app("Ollama").isDetected);
        EXPECT_EQ(controller_->containers().size(), 1U);
        EXPECT_TRUE(controller_->dockerDaemonRunning());
    });
    ASSERT_TRUE(scan());
    EXPECT_EQ(ends, 1);
}

TEST_F(ScanFlowTest, FindsNothingBelowTheRootWithoutAHome) {
    ::setenv("HOME", "relative", 1);
    start();
    ASSERT_TRUE(scan());
    EXPECT_TRUE(controller_->localModels().empty());
}

} // namespace
} // namespace zentrill
