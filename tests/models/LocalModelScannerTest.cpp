#include "models/LocalModelScanner.h"

#include "OwnSize.h"
#include "platform/FileSystem.h"
#include "support/ChildProcess.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryHome.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <initializer_list>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zentrill {
namespace {

using test::ownSize;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr std::string_view library = ".ollama/models/manifests/registry.ollama.ai/library/";
constexpr std::string_view hub = ".cache/huggingface/hub/";

std::string in(std::string_view store, std::string_view rest) {
    return std::string(store).append(rest);
}

std::vector<std::string> listed(const std::string& folder) {
    return FileSystem::shared().entryNames(folder).value_or(std::vector<std::string>());
}

std::string joined(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts) {
        text += part;
    }
    return text;
}

std::vector<std::string> names(const std::vector<LocalModel>& models) {
    std::vector<std::string> result;
    result.reserve(models.size());
    for (const LocalModel& model : models) {
        result.push_back(model.name);
    }
    return result;
}

class LocalModelScannerTest : public testing::Test {
protected:
    [[nodiscard]] LocalModelScanner scanner(LocalModelScanner::StopRequest shouldStop = {}) {
        return {home.path(), [this](std::string line) { log.push_back(std::move(line)); },
                std::move(shouldStop)};
    }

    void makeManifest(std::string_view rest) const {
        home.makeFile(in(library, rest),
                      R"({"config":{"size":"512"},"layers":[{"size":1000},{"size":2000}]})");
    }

    test::TemporaryHome home;
    std::vector<std::string> log;
};

TEST_F(LocalModelScannerTest, AHomeWithoutStoresGivesNothingAndNoLogLine) {
    EXPECT_THAT(scanner().scanOllamaModels(), IsEmpty());
    EXPECT_THAT(scanner().scanHuggingFaceModels(), IsEmpty());
    EXPECT_THAT(scanner().scanLMStudioModels(), IsEmpty());
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(LocalModelScannerTest, AnUnknownHomeGivesNothing) {
    const LocalModelScanner homeless("", [this](std::string line) { log.push_back(std::move(line)); });
    EXPECT_THAT(homeless.scanOllamaModels(), IsEmpty());
    EXPECT_THAT(homeless.scanHuggingFaceModels(), IsEmpty());
    EXPECT_THAT(homeless.scanLMStudioModels(), IsEmpty());
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(LocalModelScannerTest, WorksWithoutALog) {
    makeManifest("llama3/latest");
    EXPECT_EQ(LocalModelScanner(home.path(), {}).scanOllamaModels().size(), 1U);
}

TEST_F(LocalModelScannerTest, ListsEachOllamaTagWithItsStatedSize) {
    makeManifest("llama3/latest");
    makeManifest("llama3/8b");
    home.makeFile(in(library, "phi/latest"), R"({"config":{"size":1},"layers":[{"digest":"none"}]})");
    EXPECT_THAT(scanner().scanOllamaModels(),
                UnorderedElementsAre(LocalModel{.name = "llama3:latest",
                                                .source = "Ollama",
                                                .sizeBytes = 3512,
                                                .path = home.path(in(library, "llama3/latest"))},
                                     LocalModel{.name = "llama3:8b",
                                                .source = "Ollama",
                                                .sizeBytes = 3512,
                                                .path = home.path(in(library, "llama3/8b"))},
                                     LocalModel{.name = "phi:latest",
                                                .source = "Ollama",
                                                .sizeBytes = 0,
                                                .path = home.path(in(library, "phi/latest"))}));
    EXPECT_THAT(log, ElementsAre("Scanning Ollama models..."));
}

TEST_F(LocalModelScannerTest, OllamaTagsComeInListingOrder) {
    for (const char* model : {"zeta", "alpha", "mid"}) {
        for (const char* tag : {"9b", "1b", "latest", "4b"}) {
            makeManifest(std::string(model) + "/" + tag);
        }
    }
    std::vector<std::string> expected;
    for (const std::string& model : listed(home.path(library))) {
        for (const std::string& tag : listed(home.path(in(library, model)))) {
            expected.push_back(joined({model, ":", tag}));
        }
    }
    EXPECT_EQ(names(scanner().scanOllamaModels()), expected);
}

TEST_F(LocalModelScannerTest, OnlyTheDefaultRegistrysLibraryIsListed) {
    makeManifest("llama3/latest");
    home.makeFile(".ollama/models/manifests/registry.ollama.ai/someone/own/latest", "{}");
    home.makeFile(".ollama/models/manifests/example.com/library/other/latest", "{}");
    EXPECT_THAT(names(scanner().scanOllamaModels()), ElementsAre("llama3:latest"));
}

TEST_F(LocalModelScannerTest, StrayOllamaEntriesAreTreatedAlike) {
    home.makeFile(in(library, "stray"), "x");
    home.makeFile(in(library, "llama3/.DS_Store"), "x");
    home.makeDirectory(in(library, "llama3/folder"));
    home.makeDirectory(in(library, "empty"));
    ASSERT_EQ(::mkfifo(home.path(in(library, "llama3/fifo")).c_str(), 0600), 0);
    home.makeLink(in(library, "llama3/zero"), "/dev/zero");
    const std::vector<LocalModel> models = scanner().scanOllamaModels();
    EXPECT_THAT(names(models),
                UnorderedElementsAre("llama3:.DS_Store", "llama3:folder", "llama3:fifo", "llama3:zero"));
    for (const LocalModel& model : models) {
        EXPECT_EQ(model.sizeFormatted(), "Unknown size") << model.name;
    }
}

TEST_F(LocalModelScannerTest, AFileInTheStoresPlaceIsLoggedAndEmpty) {
    home.makeFile(".ollama/models/manifests/registry.ollama.ai/library", "x");
    home.makeFile(".cache/huggingface/hub", "x");
    home.makeFile(".cache/lm-studio/models", "x");
    EXPECT_THAT(scanner().scanOllamaModels(), IsEmpty());
    EXPECT_THAT(scanner().scanHuggingFaceModels(), IsEmpty());
    EXPECT_THAT(scanner().scanLMStudioModels(), IsEmpty());
    EXPECT_THAT(log, ElementsAre("Scanning Ollama models...", "Scanning HuggingFace models...",
                                 "Scanning LM Studio models..."));
}

TEST_F(LocalModelScannerTest, ADanglingLinkInTheStoresPlaceIsNoStore) {
    home.makeLink(".cache/huggingface/hub", "nowhere");
    EXPECT_THAT(scanner().scanHuggingFaceModels(), IsEmpty());
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(LocalModelScannerTest, ListsHubModelsByOrganisationAndName) {
    home.makeFile(in(hub, "models--meta-llama--Llama-3-8B/blobs/abc"), "12345");
    home.makeLink(in(hub, "models--meta-llama--Llama-3-8B/snapshots/main/model.bin"), "../../blobs/abc");
    home.makeFile(in(hub, "datasets--x--y/blobs/abc"), "12345");
    home.makeFile(in(hub, "spaces--x--y/blobs/abc"), "12345");
    home.makeDirectory(in(hub, ".locks/models--meta-llama--Llama-3-8B"));
    home.makeFile(in(hub, "version.txt"), "1");
    home.makeFile(in(hub, "Models--upper--case/blobs/abc"), "12345");
    const std::string folder = home.path(in(hub, "models--meta-llama--Llama-3-8B"));
    const std::int64_t folders = 3 * ownSize(folder + "/blobs");
    EXPECT_THAT(scanner().scanHuggingFaceModels(), ElementsAre(LocalModel{.name = "meta-llama/Llama-3-8B",
                                                                          .source = "HuggingFace / vLLM",
                                                                          .sizeBytes = 5 + folders,
                                                                          .path = folder}));
    EXPECT_THAT(log, ElementsAre("Scanning HuggingFace models..."));
}

TEST_F(LocalModelScannerTest, EveryMarkerInAHubNameIsReplaced) {
    home.makeDirectory(in(hub, "models--a--models--b"));
    home.makeDirectory(in(hub, "models--gpt2"));
    home.makeDirectory(in(hub, "models--a---b"));
    home.makeDirectory(in(hub, "models--"));
    home.makeFile(in(hub, "models--file"), "12345");
    const std::vector<LocalModel> models = scanner().scanHuggingFaceModels();
    EXPECT_THAT(names(models), UnorderedElementsAre("a/b", "gpt2", "a/-b", "", "file"));
    for (const LocalModel& model : models) {
        EXPECT_EQ(model.sizeBytes, 0) << model.name;
    }
}

TEST_F(LocalModelScannerTest, HubModelsComeInListingOrderWithTheirOwnSizes) {
    for (int index = 0; index < 100; ++index) {
        home.makeFile(in(hub, "models--org--m" + std::to_string(index) + "/blob"),
                      std::string(static_cast<std::size_t>(index), 'x'));
    }
    std::vector<std::string> expected;
    for (const std::string& entry : listed(home.path(hub))) {
        expected.push_back("org/" + entry.substr(std::string_view("models--org--").size()));
    }
    const std::vector<LocalModel> models = scanner().scanHuggingFaceModels();
    EXPECT_EQ(names(models), expected);
    for (const LocalModel& model : models) {
        EXPECT_EQ("org/m" + std::to_string(model.sizeBytes), model.name);
    }
}

TEST_F(LocalModelScannerTest, ListsGGUFFilesOfBothLMStudioFolders) {
    home.makeFile(".lmstudio/models/lmstudio-community/Foo/foo-Q4.gguf", "12345");
    home.makeFile(".lmstudio/models/lmstudio-community/Foo/foo-Q4.GGUF", "12345");
    home.makeFile(".lmstudio/models/lmstudio-community/Foo/readme.gguf.txt", "12345");
    home.makeLink(".lmstudio/models/lmstudio-community/Foo/link.gguf", "foo-Q4.gguf");
    home.makeFile(".cache/lm-studio/models/top.gguf", "1");
    home.makeFile(".cache/lm-studio/models/.gguf");
    EXPECT_THAT(scanner().scanLMStudioModels(),
                UnorderedElementsAre(
                    LocalModel{.name = "top.gguf",
                               .source = "LM Studio (GGUF)",
                               .sizeBytes = 1,
                               .path = home.path(".cache/lm-studio/models/top.gguf")},
                    LocalModel{.name = ".gguf",
                               .source = "LM Studio (GGUF)",
                               .sizeBytes = 0,
                               .path = home.path(".cache/lm-studio/models/.gguf")},
                    LocalModel{.name = "lmstudio-community/Foo/foo-Q4.gguf",
                               .source = "LM Studio (GGUF)",
                               .sizeBytes = 5,
                               .path = home.path(".lmstudio/models/lmstudio-community/Foo/foo-Q4.gguf")}));
    EXPECT_EQ(scanner().scanLMStudioModels().back().name, "lmstudio-community/Foo/foo-Q4.gguf");
    EXPECT_THAT(log, ElementsAre("Scanning LM Studio models...", "Scanning LM Studio models...",
                                 "Scanning LM Studio models...", "Scanning LM Studio models..."));
}

TEST_F(LocalModelScannerTest, OnlyTheLMStudioFolderThatExistsIsLogged) {
    home.makeFile(".lmstudio/models/a.gguf", "12345");
    EXPECT_THAT(names(scanner().scanLMStudioModels()), ElementsAre("a.gguf"));
    EXPECT_THAT(log, ElementsAre("Scanning LM Studio models..."));
}

TEST_F(LocalModelScannerTest, GGUFFoldersAndLinkedFoldersAreNoModels) {
    home.makeFile(".lmstudio/models/folder.gguf/inside.gguf", "12345");
    home.makeFile("elsewhere/outside.gguf", "12345");
    home.makeLink(".lmstudio/models/linked", home.path("elsewhere"));
    home.makeLink(".lmstudio/models/linked.gguf", home.path("elsewhere/outside.gguf"));
    home.makeLink(".lmstudio/models/up", "..");
    ASSERT_EQ(::mkfifo(home.path(".lmstudio/models/fifo.gguf").c_str(), 0600), 0);
    const std::vector<LocalModel> models = scanner().scanLMStudioModels();
    EXPECT_THAT(names(models), UnorderedElementsAre("folder.gguf/inside.gguf", "fifo.gguf"));
}

TEST_F(LocalModelScannerTest, AFoldersModelsStandInItsPlace) {
    for (const char* name : {"a", "b", "c", "d"}) {
        home.makeFile(std::string("root/") + name + ".gguf");
        for (const char* inner : {"x", "y", "z"}) {
            home.makeFile(std::string("root/") + name + "/" + inner + "/deep.gguf");
        }
        home.makeFile(std::string("root/") + name + "/own.gguf");
    }
    std::vector<std::string> expected;
    const auto expect = [&](const auto& self, const std::string& folder, const std::string& prefix) -> void {
        for (const std::string& entry : listed(folder)) {
            if (std::filesystem::is_directory(joined({folder, "/", entry}))) {
                self(self, joined({folder, "/", entry}), joined({prefix, entry, "/"}));
            } else {
                expected.push_back(prefix + entry);
            }
        }
    };
    expect(expect, home.path("root"), "");
    EXPECT_EQ(names(scanner().scanGGUFRecursively(home.path("root"), home.path("root"))), expected);
}

TEST_F(LocalModelScannerTest, EveryOccurrenceOfTheRootLeavesTheName) {
    const std::string root = home.path("root");
    home.makeFile("root/a" + root + "/b.gguf");
    EXPECT_THAT(names(scanner().scanGGUFRecursively(root, root)), ElementsAre("ab.gguf"));
    EXPECT_THAT(names(scanner().scanGGUFRecursively(home.path("root/a"), home.path("other"))),
                ElementsAre(root + "/a" + root + "/b.gguf"));
}

TEST_F(LocalModelScannerTest, NamesThatAreNotUTF8Survive) {
    home.makeFile(".lmstudio/models/odd\xff\n/m\xfe.gguf", "12345");
    const std::vector<LocalModel> models = scanner().scanLMStudioModels();
    ASSERT_THAT(names(models), ElementsAre("odd\xff\n/m\xfe.gguf"));
    EXPECT_TRUE(std::filesystem::exists(models.front().path));
}

TEST_F(LocalModelScannerTest, ATreeDeeperThanAnyPathIsSearchedWhole) {
    constexpr int depth = 100;
    const std::string nested(60, 'n');
    int current = ::open(home.makeDirectory("root").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (int level = 0; level < depth; ++level) {
        ASSERT_GE(current, 0);
        ASSERT_EQ(::mkdirat(current, nested.c_str(), 0700), 0);
        const int child = ::openat(current, nested.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        ::close(current);
        current = child;
    }
    const int file = ::openat(current, "deepest.gguf", O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_EQ(::write(file, "12345", 5), 5);
    ::close(file);
    ::close(current);

    const std::vector<LocalModel> models =
        scanner().scanGGUFRecursively(home.path("root"), home.path("root"));
    ASSERT_EQ(models.size(), 1U);
    EXPECT_EQ(models.front().sizeBytes, 5);
    EXPECT_EQ(models.front().name.size(),
              (depth * (nested.size() + 1)) + std::string_view("deepest.gguf").size());
    EXPECT_EQ(models.front().path, home.path("root/") + models.front().name);
}

TEST_F(LocalModelScannerTest, AnUnreadableStoreIsEmptyAndAnUnreadableModelUnknown) {
    makeManifest("readable/latest");
    makeManifest("closed/latest");
    makeManifest("secret/latest");
    home.makeFile(in(hub, "models--org--name/blob"), "12345");
    ASSERT_EQ(::chmod(home.path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(home.path(in(library, "closed")).c_str(), 0), 0);
    ASSERT_EQ(::chmod(home.path(in(library, "secret/latest")).c_str(), 0), 0);
    ASSERT_EQ(::chmod(home.path(".cache/huggingface/hub").c_str(), 0), 0);
    EXPECT_TRUE(test::passesInChild([&] {
        test::becomeOrdinaryUser();
        const std::vector<LocalModel> models = scanner().scanOllamaModels();
        EXPECT_THAT(names(models), UnorderedElementsAre("readable:latest", "secret:latest"));
        for (const LocalModel& model : models) {
            EXPECT_EQ(model.sizeBytes, model.name == "readable:latest" ? 3512 : 0);
        }
        EXPECT_THAT(scanner().scanHuggingFaceModels(), IsEmpty());
        EXPECT_THAT(log, ElementsAre("Scanning Ollama models...", "Scanning HuggingFace models..."));
    }));
}

TEST_F(LocalModelScannerTest, AStopRequestEndsEveryScan) {
    makeManifest("llama3/latest");
    home.makeFile(in(hub, "models--org--name/blob"), "12345");
    home.makeFile(".lmstudio/models/a.gguf", "12345");
    const LocalModelScanner stopped = scanner([] { return true; });
    EXPECT_THAT(stopped.scanOllamaModels(), IsEmpty());
    EXPECT_THAT(stopped.scanHuggingFaceModels(), IsEmpty());
    EXPECT_THAT(stopped.scanLMStudioModels(), IsEmpty());
    EXPECT_EQ(stopped.getFolderSize(home.path(".lmstudio")), 0);
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(LocalModelScannerTest, AStopRequestInMidScanEndsItThere) {
    for (int index = 0; index < 50; ++index) {
        makeManifest("model" + std::to_string(index) + "/latest");
        home.makeFile(".lmstudio/models/folder" + std::to_string(index) + "/a.gguf");
    }
    int asked = 0;
    const auto afterTen = [&asked] { return ++asked > 10; };
    EXPECT_LT(scanner(afterTen).scanOllamaModels().size(), 50U);
    EXPECT_EQ(asked, 11);
    asked = 0;
    EXPECT_LT(scanner(afterTen).scanLMStudioModels().size(), 50U);
    EXPECT_EQ(asked, 11);
}

TEST_F(LocalModelScannerTest, ScansRunOnSeveralThreadsAtOnce) {
    for (int index = 0; index < 20; ++index) {
        home.makeFile(in(hub, "models--org--m" + std::to_string(index) + "/blob"), "12345");
    }
    const LocalModelScanner shared(home.path(), {});
    const std::vector<LocalModel> expected = shared.scanHuggingFaceModels();
    std::vector<std::vector<LocalModel>> results(4);
    std::vector<std::thread> threads;
    threads.reserve(results.size());
    for (std::vector<LocalModel>& result : results) {
        threads.emplace_back([&shared, &result] { result = shared.scanHuggingFaceModels(); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const std::vector<LocalModel>& result : results) {
        EXPECT_EQ(result, expected);
    }
}

} // namespace
} // namespace zentrill
