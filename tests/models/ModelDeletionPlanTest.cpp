#include "models/ModelDeletionPlan.h"

#include "models/LocalModel.h"
#include "models/ModelDeletionService.h"
#include "support/ChildProcess.h"
#include "support/FakeCommandRunner.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryHome.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

namespace zentrill {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
namespace fs = std::filesystem;

std::vector<std::string> pathsOf(const DeletionPlan::Items& items) {
    std::vector<std::string> paths;
    for (const DeletionPlan::Item& item : items.listed) {
        paths.push_back(item.path);
    }
    return paths;
}

/// The plan, the result and the disk of one model's deletion.
class ModelDeletionPlans : public testing::Test {
protected:
    /// Everything in the home folder that is no folder.
    [[nodiscard]] std::set<std::string> files() const {
        std::set<std::string> found;
        for (const auto& entry : fs::recursive_directory_iterator(home.path())) {
            if (entry.symlink_status().type() != fs::file_type::directory) {
                found.insert(entry.path());
            }
        }
        return found;
    }

    static std::string digest(char letter) { return "sha256:" + std::string(64, letter); }

    [[nodiscard]] std::string blob(char letter) const {
        return home.path(".ollama/models/blobs/sha256-" + std::string(64, letter));
    }

    /// A manifest in the store and its blobs, each one of 10 bytes; the first one is the config.
    std::string makeOllamaModel(const std::string& name, const std::string& blobs) const {
        std::string layers;
        for (const char letter : blobs.substr(1)) {
            layers += (layers.empty() ? "" : ",") + ("{\"digest\":\"" + digest(letter) + "\",\"size\":10}");
        }
        for (const char letter : blobs) {
            home.makeFile(".ollama/models/blobs/sha256-" + std::string(64, letter), "0123456789");
        }
        return home.makeFile(".ollama/models/manifests/" + name,
                             "{\"config\":{\"digest\":\"" + digest(blobs[0]) +
                                 "\",\"size\":10},\"layers\":[" + layers + "]}");
    }

    /// Removes a manifest, then what no other one names, as Ollama does.
    void makeOllama(const std::string& manifest) const {
        home.makeExecutable("bin/ollama", R"(#!/bin/sh
manifest=')" + manifest + R"('
digests=$(grep -o 'sha256:[0-9a-f]*' "$manifest")
rm "$manifest"
for digest in $digests; do
    if ! grep -qr "$digest" "$HOME/.ollama/models/manifests"; then
        rm -f "$HOME/.ollama/models/blobs/sha256-${digest#sha256:}"
    fi
done
)");
    }

    [[nodiscard]] ModelDeletionService service() const {
        return ModelDeletionService(std::make_shared<ShellCommandRunner>(
            Environment{{"PATH", home.path("bin") + ":/usr/bin:/bin"}, {"HOME", home.path()}}));
    }

    static ModelDeletionPlan plan(std::string_view source, const std::string& path,
                                  const PlanOptions& options = {.listedItems = SIZE_MAX}) {
        const auto nothing = std::make_shared<test::FakeCommandRunner>([](const auto& /*call*/) {
            ADD_FAILURE() << "a tool was started";
            return test::ok();
        });
        return ModelDeletionService(nothing).plan(std::string(source), path, options);
    }

    /// Deletes the model, which must come out as planned.
    void expectForetold(const ModelDeletionPlan& plan, const std::string& name, std::string_view source,
                        const std::string& path) const {
        const std::set<std::string> before = files();
        const ModelDeletionResult result = service().deleteModel(name, std::string(source), path);
        EXPECT_EQ(result.deletionReport.failures, plan.files.failures);
        EXPECT_EQ(fs::exists(fs::symlink_status(path)), !plan.files.itemGoes);
        std::set<std::string> expected = before;
        for (const std::string& gone : pathsOf(plan.files.removed)) {
            expected.erase(gone);
        }
        EXPECT_EQ(files(), expected);
    }

    test::TemporaryHome home;
};

TEST_F(ModelDeletionPlans, ForOllamaAreTheManifestAndItsBlobs) {
    const std::string manifest = makeOllamaModel("registry.ollama.ai/library/llama3/latest", "abc");
    makeOllamaModel("registry.ollama.ai/library/other/latest", "de");
    const ModelDeletionPlan plan = this->plan(ollamaSource, manifest);
    EXPECT_THAT(pathsOf(plan.files.removed), ElementsAre(manifest, blob('a'), blob('b'), blob('c')));
    const auto size = static_cast<std::int64_t>(fs::file_size(manifest));
    EXPECT_EQ(plan.files.removed.logicalBytes, size + 30);
    EXPECT_EQ(plan.files.removed.listed[1],
              (DeletionPlan::Item{.path = blob('a'), .logicalBytes = 10, .isFolder = false}));
    EXPECT_GT(plan.files.freedBytes, 0);
    EXPECT_THAT(plan.sharedBlobs, IsEmpty());
    EXPECT_TRUE(plan.files.itemGoes);
    makeOllama(manifest);
    expectForetold(plan, "llama3:latest", ollamaSource, manifest);
}

TEST_F(ModelDeletionPlans, ForOllamaNameWhoSharesBlobsWhichStay) {
    const std::string manifest = makeOllamaModel("registry.ollama.ai/library/llama3/latest", "abca");
    makeOllamaModel("registry.ollama.ai/library/llama3/8b", "xb");
    makeOllamaModel("registry.ollama.ai/someone/tuned/v1", "yb");
    makeOllamaModel("hf.co/org/model/Q4", "zc");
    const ModelDeletionPlan plan = this->plan(ollamaSource, manifest);
    EXPECT_THAT(pathsOf(plan.files.removed), ElementsAre(manifest, blob('a')));
    EXPECT_THAT(plan.sharedBlobs,
                ElementsAre(ModelDeletionPlan::SharedBlob{.path = blob('b'),
                                                          .logicalBytes = 10,
                                                          .models = {"llama3:8b", "someone/tuned:v1"}},
                            ModelDeletionPlan::SharedBlob{
                                .path = blob('c'), .logicalBytes = 10, .models = {"hf.co/org/model:Q4"}}));
    makeOllama(manifest);
    expectForetold(plan, "llama3:latest", ollamaSource, manifest);
}

TEST_F(ModelDeletionPlans, ForOllamaCountWhatTheDiskGetsBack) {
    const std::string manifest = makeOllamaModel("registry.ollama.ai/library/llama3/latest", "ab");
    const std::int64_t freed = plan(ollamaSource, manifest).files.freedBytes;
    struct stat status{};
    ASSERT_EQ(::stat(blob('b').c_str(), &status), 0);
    const std::int64_t occupied = std::int64_t{status.st_blocks} * 512;
    ASSERT_GT(occupied, 0);
    fs::create_hard_link(blob('b'), home.path("elsewhere"));
    EXPECT_EQ(plan(ollamaSource, manifest).files.freedBytes, freed - occupied);
    fs::remove(home.path("elsewhere"));
    fs::remove(blob('b'));
    EXPECT_THAT(pathsOf(plan(ollamaSource, manifest).files.removed), ElementsAre(manifest, blob('a')))
        << "a missing blob is listed";
}

TEST_F(ModelDeletionPlans, ForOllamaTakeAManifestThatNobodyUnderstandsAlone) {
    const std::string manifest =
        home.makeFile(".ollama/models/manifests/registry.ollama.ai/library/odd/latest", "no manifest");
    const ModelDeletionPlan plan = this->plan(ollamaSource, manifest);
    EXPECT_THAT(pathsOf(plan.files.removed), ElementsAre(manifest));
    EXPECT_TRUE(plan.files.itemGoes);
    fs::remove(manifest);
    EXPECT_EQ(this->plan(ollamaSource, manifest), ModelDeletionPlan{});
}

TEST_F(ModelDeletionPlans, ForOllamaNeverLeaveTheStore) {
    const std::string precious = home.makeFile(".ollama/models/precious", "x");
    const std::string manifest = home.makeFile(
        ".ollama/models/manifests/registry.ollama.ai/library/evil/latest",
        R"({"config":{"digest":"sha256:../precious","size":1},"layers":[{"digest":"../precious","size":1},)"
        R"({"digest":"sha256:)" +
            std::string(63, 'a') +
            R"(/","size":1},{"digest":"","size":1},{"size":1},{"digest":7,"size":1}]})");
    EXPECT_THAT(pathsOf(plan(ollamaSource, manifest).files.removed), ElementsAre(manifest));
}

TEST_F(ModelDeletionPlans, ForOllamaForetellTheCleanupsRefusalBehindALink) {
    const std::string real = makeOllamaModel("registry.ollama.ai/library/llama3/latest", "ab");
    fs::rename(home.path(".ollama"), home.path("disk"));
    home.makeLink(".ollama", home.path("disk"));
    const ModelDeletionPlan plan = this->plan(ollamaSource, real);
    EXPECT_EQ(plan.files.removed.count, 3U);
    EXPECT_THAT(plan.files.failures,
                ElementsAre("Refusing to traverse symlink ancestor: " + home.path(".ollama")));
    makeOllama(real);
    const ModelDeletionResult result = service().deleteModel("llama3:latest", "Ollama", real);
    EXPECT_EQ(result.deletionReport.failures, plan.files.failures);
    EXPECT_THAT(pathsOf(plan.files.removed),
                testing::Each(testing::Truly([](const std::string& path) { return !fs::exists(path); })));
}

TEST_F(ModelDeletionPlans, ForOllamaListNoMoreThanAskedForAndEndWhenToldTo) {
    const std::string manifest = makeOllamaModel("registry.ollama.ai/library/llama3/latest", "abc");
    makeOllamaModel("registry.ollama.ai/library/other/latest", "c");
    const ModelDeletionPlan some = plan(ollamaSource, manifest, {.listedItems = 2});
    EXPECT_THAT(pathsOf(some.files.removed), ElementsAre(manifest, blob('a')));
    EXPECT_EQ(some.files.removed.count, 3U);
    for (int most = 1; most < 30; ++most) {
        int asked = 0;
        const ModelDeletionPlan stopped =
            plan(ollamaSource, manifest, {.shouldStop = [&asked, most] { return ++asked == most; }});
        EXPECT_EQ(stopped.files.stopped, asked >= most) << most;
        EXPECT_LE(asked, most);
        EXPECT_EQ(stopped.files.itemGoes, !stopped.files.stopped);
        EXPECT_THAT(pathsOf(stopped.files.removed), Not(testing::Contains(blob('c')))) << "shared";
    }
}

TEST_F(ModelDeletionPlans, ForAFileAreThatFile) {
    const std::string file = home.makeFile(".lmstudio/models/org/Foo/foo.gguf", "12345");
    home.makeFile(".lmstudio/models/org/Foo/bar.gguf", "12345");
    const ModelDeletionPlan plan = this->plan(lmStudioSource, file);
    EXPECT_THAT(pathsOf(plan.files.removed), ElementsAre(file));
    EXPECT_EQ(plan.files.removed.logicalBytes, 5);
    expectForetold(plan, "org/Foo/foo.gguf", lmStudioSource, file);
}

TEST_F(ModelDeletionPlans, ForAHubFolderAreAllThatItHolds) {
    const std::string repository = ".cache/huggingface/hub/models--org--name";
    home.makeFile(repository + "/blobs/abc", "12345");
    home.makeFile(repository + "/refs/auth.json", "{}");
    home.makeLink(repository + "/snapshots/main/model.bin", "../../blobs/abc");
    const ModelDeletionPlan plan = this->plan(huggingFaceSource, home.path(repository));
    EXPECT_EQ(plan.files.removed.count, 8U);
    EXPECT_EQ(plan.files.recognizedCredentials.count, 0U) << "a model holds none";
    EXPECT_EQ(plan.bytesElsewhere, 0);
    EXPECT_TRUE(plan.files.itemGoes);
    expectForetold(plan, "org/name", huggingFaceSource, home.path(repository));
}

TEST_F(ModelDeletionPlans, ForAHubFolderTellWhatLiesElsewhereAndFreesNothing) {
    const std::string repository = ".cache/huggingface/hub/models--org--name";
    const std::string shared = home.makeFile("shared/weights", std::string(100000, 'x'));
    home.makeLink(repository + "/blobs/abc", shared);
    home.makeLink(repository + "/snapshots/main/model.bin", "../../blobs/abc");
    const ModelDeletionPlan plan = this->plan(huggingFaceSource, home.path(repository));
    EXPECT_EQ(plan.bytesElsewhere, 100000);
    EXPECT_LT(plan.files.removed.logicalBytes, 1000);
    EXPECT_LT(plan.files.freedBytes, 100000);
    expectForetold(plan, "org/name", huggingFaceSource, home.path(repository));
    EXPECT_TRUE(fs::exists(shared));
}

TEST_F(ModelDeletionPlans, ForAHubFolderForeseeWhatCannotGo) {
    const std::string folder = home.path(".cache/huggingface/hub/models--org--name");
    home.makeFile(".cache/huggingface/hub/models--org--name/blobs/abc", "12345");
    home.makeFile(".cache/huggingface/hub/models--org--name/locked/kept", "12345");
    ASSERT_EQ(::chmod(home.path().c_str(), 0755), 0);
    test::giveToOrdinaryUser(home.path());
    ASSERT_EQ(::chmod((folder + "/locked").c_str(), 0555), 0);
    EXPECT_TRUE(test::passesAsOrdinaryUser([&] {
        const ModelDeletionPlan plan = this->plan(huggingFaceSource, folder);
        EXPECT_THAT(pathsOf(plan.files.failing), ElementsAre(folder + "/locked/kept"));
        EXPECT_FALSE(plan.files.itemGoes);
        expectForetold(plan, "org/name", huggingFaceSource, folder);
    }));
}

} // namespace
} // namespace zentrill
