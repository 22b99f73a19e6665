#include "models/ModelDeletionService.h"

#include "models/LocalModel.h"
#include "support/ChildProcess.h"
#include "support/FakeCommandRunner.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryHome.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zentrill {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

/// A real runner that loses its patience sooner than the service allows.
class ImpatientRunner final : public CommandExecuting {
public:
    ImpatientRunner(Environment environment, Timeout patience)
        : runner_(std::move(environment)), patience_(patience) {}

    CommandResult run(const std::string& executable, const std::vector<std::string>& arguments,
                      Timeout timeout) override {
        return runner_.run(executable, arguments, std::min(timeout, patience_));
    }

private:
    ShellCommandRunner runner_;
    Timeout patience_;
};

class ModelDeletionServiceTest : public testing::Test {
protected:
    /// Finds tools in the test's own folder first.
    [[nodiscard]] Environment environment() const {
        return {{"PATH", home.path("bin") + ":/usr/bin:/bin"},
                {"LC_ALL", "C"},
                {"MANIFEST", manifest},
                {"ARGUMENTS", home.path("arguments")}};
    }

    [[nodiscard]] ModelDeletionService service() const {
        return ModelDeletionService(std::make_shared<ShellCommandRunner>(environment()));
    }

    void makeOllama(const std::string& script) const {
        home.makeExecutable("bin/ollama", "#!/bin/sh\n" + script);
    }

    [[nodiscard]] static bool exists(const std::string& path) {
        return std::filesystem::exists(std::filesystem::symlink_status(path));
    }

    test::TemporaryHome home;
    std::string manifest =
        home.makeFile(".ollama/models/manifests/registry.ollama.ai/library/llama3/latest", "{}");
};

TEST_F(ModelDeletionServiceTest, OllamaModelsGoThroughOllamasToolWithinThirtySeconds) {
    const auto commands =
        std::make_shared<test::FakeCommandRunner>([](const auto& /*call*/) { return test::ok(); });
    const ModelDeletionResult result =
        ModelDeletionService(commands).deleteModel("llama3:latest", "Ollama", manifest);
    EXPECT_THAT(commands->calls(), ElementsAre(test::FakeCommandRunner::Call{
                                       "/usr/bin/env", {"ollama", "rm", "llama3:latest"}, 30}));
    EXPECT_TRUE(result.succeeded);
}

TEST_F(ModelDeletionServiceTest, AManifestThatOllamaRemovedIsNoFailure) {
    makeOllama("rm \"$MANIFEST\"\n");
    EXPECT_EQ(service().deleteModel("llama3:latest", "Ollama", manifest),
              (ModelDeletionResult{.succeeded = true, .message = "Removed llama3:latest from Ollama."}));
}

TEST_F(ModelDeletionServiceTest, AManifestThatOllamaLeftIsCleanedUp) {
    makeOllama("exit 0\n");
    const ModelDeletionResult result = service().deleteModel("llama3:latest", "Ollama", manifest);
    EXPECT_TRUE(result.succeeded);
    EXPECT_EQ(result.message, "Removed llama3:latest from Ollama.");
    EXPECT_EQ(result.deletionReport, (DeletionReport{{manifest}, {}, {}}));
    EXPECT_FALSE(exists(manifest));
}

TEST_F(ModelDeletionServiceTest, TheNameReachesOllamaAsItIs) {
    makeOllama("printf '%s\\n' \"$#\" \"$@\" > \"$ARGUMENTS\"\n");
    const std::string name = "odd $(touch x) 'name\";*:latest";
    EXPECT_TRUE(service().deleteModel(name, "Ollama", manifest).succeeded);
    std::ifstream written(home.path("arguments"));
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(written), {}), "2\nrm\n" + name + "\n");
}

TEST_F(ModelDeletionServiceTest, WhenOllamaFailsNothingIsDeleted) {
    makeOllama("echo ignored\necho 'Error: model not found' >&2\nexit 1\n");
    EXPECT_EQ(
        service().deleteModel("llama3:latest", "Ollama", manifest),
        (ModelDeletionResult{.message = "Ollama could not remove llama3:latest: Error: model not found"}));
    EXPECT_TRUE(exists(manifest));
}

TEST_F(ModelDeletionServiceTest, AMissingOllamaIsACommandFailure) {
    Environment withoutOllama = environment();
    withoutOllama["PATH"] = home.path("bin");
    const ModelDeletionResult result =
        ModelDeletionService(std::make_shared<ShellCommandRunner>(withoutOllama))
            .deleteModel("llama3:latest", "Ollama", manifest);
    EXPECT_FALSE(result.succeeded);
    EXPECT_EQ(result.message,
              "Ollama could not remove llama3:latest: /usr/bin/env: 'ollama': No such file or directory");
    EXPECT_EQ(result.deletionReport, DeletionReport{});
    EXPECT_TRUE(exists(manifest));
}

TEST_F(ModelDeletionServiceTest, AFailureWithoutAWordTellsTheStatus) {
    makeOllama("exit 127\n");
    EXPECT_EQ(service().deleteModel("llama3:latest", "Ollama", manifest).message,
              "Ollama could not remove llama3:latest: Command exited with status 127.");
    EXPECT_TRUE(exists(manifest));
}

TEST_F(ModelDeletionServiceTest, AToolThatCannotBeLaunchedIsACommandFailure) {
    const auto commands = std::make_shared<test::FakeCommandRunner>([](const auto& /*call*/) {
        CommandResult result;
        result.launchError = "Operation not permitted";
        return result;
    });
    EXPECT_EQ(ModelDeletionService(commands).deleteModel("llama3:latest", "Ollama", manifest).message,
              "Ollama could not remove llama3:latest: Operation not permitted");
    EXPECT_TRUE(exists(manifest));
}

TEST_F(ModelDeletionServiceTest, AnOllamaThatHangsIsEndedAndNothingIsDeleted) {
    makeOllama("echo $$ > \"$ARGUMENTS\"\nexec sleep 1000\n");
    const auto commands = std::make_shared<ImpatientRunner>(environment(), CommandExecuting::Timeout(1.0));
    EXPECT_EQ(ModelDeletionService(commands).deleteModel("llama3:latest", "Ollama", manifest),
              (ModelDeletionResult{.message = "Ollama could not remove llama3:latest: Command timed out."}));
    EXPECT_TRUE(exists(manifest));
    pid_t process = 0;
    std::ifstream(home.path("arguments")) >> process;
    ASSERT_GT(process, 0);
    EXPECT_EQ(::kill(process, 0), -1);
}

TEST_F(ModelDeletionServiceTest, AManifestThatCannotBeRemovedIsToldAfterOllamasSuccess) {
    ASSERT_EQ(::chmod(home.path().c_str(), 0755), 0);
    test::giveToOrdinaryUser(home.path());
    const std::string folder = std::filesystem::path(manifest).parent_path();
    ASSERT_EQ(::chmod(folder.c_str(), 0555), 0);
    EXPECT_TRUE(test::passesInChild([&] {
        test::becomeOrdinaryUser();
        const auto commands =
            std::make_shared<test::FakeCommandRunner>([](const auto& /*call*/) { return test::ok(); });
        const ModelDeletionResult result =
            ModelDeletionService(commands).deleteModel("llama3:latest", "Ollama", manifest);
        EXPECT_FALSE(result.succeeded);
        ASSERT_EQ(result.deletionReport.failures.size(), 1U);
        EXPECT_THAT(result.deletionReport.failures.front(), StartsWith(manifest + ": "));
        EXPECT_EQ(result.message, "Ollama removed llama3:latest, but manifest cleanup failed: " +
                                      result.deletionReport.failures.front());
        EXPECT_THAT(result.deletionReport.removed, IsEmpty());
    }));
    EXPECT_TRUE(exists(manifest));
}

TEST_F(ModelDeletionServiceTest, OnlyTheExactLabelMeansOllama) {
    const auto commands =
        std::make_shared<test::FakeCommandRunner>([](const auto& /*call*/) { return test::failed(1); });
    const ModelDeletionService strict(commands);
    for (const char* source : {"ollama", "OLLAMA", "Ollama ", ""}) {
        const std::string file = home.makeFile("model", "x");
        const ModelDeletionResult result = strict.deleteModel("m", source, file);
        EXPECT_EQ(result,
                  (ModelDeletionResult{
                      .succeeded = true, .message = "Removed model m.", .deletionReport = {{file}, {}, {}}}))
            << source;
        EXPECT_FALSE(exists(file)) << source;
    }
    EXPECT_THAT(commands->calls(), IsEmpty());
}

TEST_F(ModelDeletionServiceTest, AGGUFFileGoesAloneAndLeavesItsFolder) {
    const std::string file = home.makeFile(".lmstudio/models/org/Foo/foo.gguf", "12345");
    const std::string sibling = home.makeFile(".lmstudio/models/org/Foo/bar.gguf", "12345");
    EXPECT_EQ(ModelDeletionService().deleteModel("org/Foo/foo.gguf", std::string(lmStudioSource), file),
              (ModelDeletionResult{.succeeded = true,
                                   .message = "Removed model org/Foo/foo.gguf.",
                                   .deletionReport = {{file}, {}, {}}}));
    EXPECT_FALSE(exists(file));
    EXPECT_TRUE(exists(sibling));
}

TEST_F(ModelDeletionServiceTest, AHubFolderGoesWholeWithoutWhatItsLinksPointTo) {
    const std::string folder = home.path(".cache/huggingface/hub/models--org--name");
    home.makeFile(".cache/huggingface/hub/models--org--name/blobs/abc", "12345");
    home.makeFile(".cache/huggingface/hub/models--org--name/refs/auth.json", "{}");
    home.makeLink(".cache/huggingface/hub/models--org--name/snapshots/main/model.bin", "../../blobs/abc");
    const std::string outside = home.makeFile("outside/file", "x");
    home.makeLink(".cache/huggingface/hub/models--org--name/outside", home.path("outside"));
    const std::string other = home.makeFile(".cache/huggingface/hub/models--org--other/blobs/abc", "x");
    EXPECT_EQ(service().deleteModel("org/name", std::string(huggingFaceSource), folder),
              (ModelDeletionResult{.succeeded = true,
                                   .message = "Removed model org/name.",
                                   .deletionReport = {{folder}, {}, {}}}));
    EXPECT_FALSE(exists(folder));
    EXPECT_TRUE(exists(outside));
    EXPECT_TRUE(exists(other));
}

TEST_F(ModelDeletionServiceTest, AHubFolderThatCannotGoWholeIsAFailure) {
    const std::string folder = home.path(".cache/huggingface/hub/models--org--name");
    home.makeFile(".cache/huggingface/hub/models--org--name/blobs/abc", "12345");
    const std::string kept = home.makeFile(".cache/huggingface/hub/models--org--name/locked/kept", "12345");
    ASSERT_EQ(::chmod(home.path().c_str(), 0755), 0);
    test::giveToOrdinaryUser(home.path());
    ASSERT_EQ(::chmod((folder + "/locked").c_str(), 0555), 0);
    EXPECT_TRUE(test::passesInChild([&] {
        test::becomeOrdinaryUser();
        const ModelDeletionResult result =
            service().deleteModel("org/name", std::string(huggingFaceSource), folder);
        EXPECT_FALSE(result.succeeded);
        // The report is of the folder as a whole, though some of it is gone.
        EXPECT_THAT(result.deletionReport.failures, ElementsAre(StartsWith(folder + ": ")));
        EXPECT_THAT(result.deletionReport.removed, IsEmpty());
        EXPECT_THAT(result.deletionReport.preserved, IsEmpty());
        EXPECT_EQ(result.message, "Could not remove org/name: " + result.deletionReport.failures.at(0));
    }));
    EXPECT_TRUE(exists(kept));
    EXPECT_FALSE(exists(folder + "/blobs"));
}

TEST_F(ModelDeletionServiceTest, AModelThatIsGoneAlreadyIsNoFailure) {
    EXPECT_EQ(service().deleteModel("gone", std::string(lmStudioSource), home.path("gone.gguf")),
              (ModelDeletionResult{.succeeded = true, .message = "Removed model gone."}));
}

TEST_F(ModelDeletionServiceTest, AStoreBehindALinkIsRefused) {
    const std::string file = home.makeFile("disk/foo.gguf", "12345");
    const std::string store = home.makeLink(".lmstudio/models", home.path("disk"));
    const ModelDeletionResult result =
        service().deleteModel("foo.gguf", std::string(lmStudioSource), store + "/foo.gguf");
    EXPECT_FALSE(result.succeeded);
    EXPECT_EQ(result.message, "Could not remove foo.gguf: Refusing to traverse symlink ancestor: " + store);
    EXPECT_TRUE(exists(file));
}

} // namespace
} // namespace zentrill
