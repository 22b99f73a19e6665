#include "models/LocalModelScanner.h"

#include "LocalModelScannerFixture.h"
#include "OwnSize.h"
#include "support/ChildProcess.h"
#include "support/OrdinaryUser.h"
#include "support/Processes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

namespace zentrill {
namespace {

using test::joined;
using test::listed;
using test::names;
using test::ollamaLibrary;
using test::ownSize;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

using LocalModelScannerTest = test::LocalModelScannerFixture;

constexpr std::string_view hub = ".cache/huggingface/hub/";

std::string in(std::string_view store, std::string_view rest) {
    return std::string(store).append(rest);
}

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

TEST_F(LocalModelScannerTest, AnUnknownHomeIsNoFolderThatHappensToHaveTheName) {
    home.makeFile("~/.lmstudio/models/one.gguf");
    EXPECT_TRUE(test::holdsInForkedChild([this] {
        return ::chdir(home.path().c_str()) == 0 &&
               LocalModelScanner("~", {}).scanLMStudioModels().size() == 1 &&
               LocalModelScanner("", {}).scanLMStudioModels().empty();
    }));
}

TEST_F(LocalModelScannerTest, WorksWithoutALog) {
    makeManifest("llama3/latest");
    EXPECT_EQ(LocalModelScanner(home.path(), {}).scanOllamaModels().size(), 1U);
}

TEST_F(LocalModelScannerTest, ListsEachOllamaTagWithItsStatedSize) {
    makeManifest("llama3/latest");
    makeManifest("llama3/8b");
    home.makeFile(in(ollamaLibrary, "phi/latest"), R"({"config":{"size":1},"layers":[{"digest":"none"}]})");
    EXPECT_THAT(scanner().scanOllamaModels(),
                UnorderedElementsAre(LocalModel{.name = "llama3:latest",
                                                .source = "Ollama",
                                                .sizeBytes = 3512,
                                                .path = home.path(in(ollamaLibrary, "llama3/latest"))},
                                     LocalModel{.name = "llama3:8b",
                                                .source = "Ollama",
                                                .sizeBytes = 3512,
                                                .path = home.path(in(ollamaLibrary, "llama3/8b"))},
                                     LocalModel{.name = "phi:latest",
                                                .source = "Ollama",
                                                .sizeBytes = 0,
                                                .path = home.path(in(ollamaLibrary, "phi/latest"))}));
    EXPECT_THAT(log, ElementsAre("Scanning Ollama models..."));
}

TEST_F(LocalModelScannerTest, OllamaTagsComeInListingOrder) {
    for (const char* model : {"zeta", "alpha", "mid"}) {
        for (const char* tag : {"9b", "1b", "latest", "4b"}) {
            makeManifest(std::string(model) + "/" + tag);
        }
    }
    std::vector<std::string> expected;
    for (const std::string& model : listed(home.path(ollamaLibrary))) {
        for (const std::string& tag : listed(home.path(in(ollamaLibrary, model)))) {
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
    home.makeFile(in(ollamaLibrary, "stray"), "x");
    home.makeFile(in(ollamaLibrary, "llama3/.DS_Store"), "x");
    home.makeDirectory(in(ollamaLibrary, "llama3/folder"));
    home.makeDirectory(in(ollamaLibrary, "empty"));
    ASSERT_EQ(::mkfifo(home.path(in(ollamaLibrary, "llama3/fifo")).c_str(), 0600), 0);
    home.makeLink(in(ollamaLibrary, "llama3/zero"), "/dev/zero");
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
    home.makeFile(in(hub, "old-models--x--y/blobs/abc"), "12345");
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

TEST_F(LocalModelScannerTest, AnUnreadableStoreIsEmptyAndAnUnreadableModelUnknown) {
    makeManifest("readable/latest");
    makeManifest("closed/latest");
    makeManifest("secret/latest");
    home.makeFile(in(hub, "models--org--name/blob"), "12345");
    ASSERT_EQ(::chmod(home.path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(home.path(in(ollamaLibrary, "closed")).c_str(), 0), 0);
    ASSERT_EQ(::chmod(home.path(in(ollamaLibrary, "secret/latest")).c_str(), 0), 0);
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
