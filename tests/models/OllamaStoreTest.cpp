#include "models/OllamaStore.h"

#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace zentrill {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class OllamaStoreTest : public testing::Test {
protected:
    static std::string digest(char letter) { return "sha256:" + std::string(64, letter); }

    [[nodiscard]] std::string blob(char letter) const {
        return folder.path("blobs/sha256-" + std::string(64, letter));
    }

    std::string makeManifest(const std::string& name, const std::string& config,
                             const std::string& layer) const {
        return folder.makeFile("manifests/" + name, R"({"config":{"size":1,"digest":")" + config +
                                                        R"("},"layers":[{"digest":")" + layer + R"("}]})");
    }

    test::TemporaryDirectory folder;
};

TEST_F(OllamaStoreTest, KnowsTheBlobsOfAManifest) {
    const std::string manifest = makeManifest("registry.ollama.ai/library/m/t", digest('a'), digest('B'));
    EXPECT_THAT(OllamaStore(manifest).blobs(), ElementsAre(blob('a'), blob('B')));
    EXPECT_THAT(OllamaStore(folder.path() + "//manifests/./registry.ollama.ai/library/m/t").blobs(),
                ElementsAre(blob('a'), blob('B')));
}

TEST_F(OllamaStoreTest, CountsABlobOnceAndTakesBothSeparators) {
    const std::string manifest =
        makeManifest("registry.ollama.ai/library/m/t", digest('a'), "sha256-" + std::string(64, 'a'));
    EXPECT_THAT(OllamaStore(manifest).blobs(), ElementsAre(blob('a')));
}

TEST_F(OllamaStoreTest, TakesTheLastOfTwoDigestsAndNoneForOtherThings) {
    const auto blobsOf = [this](const std::string& text) {
        return OllamaStore(folder.makeFile("manifests/h/n/m/t", text)).blobs();
    };
    EXPECT_THAT(blobsOf(R"({"config":{"digest":")" + digest('a') + R"(","digest":")" + digest('b') +
                        R"("},"layers":[]})"),
                ElementsAre(blob('b')));
    EXPECT_THAT(blobsOf(R"({"config":{"digest":")" + digest('a') + R"(","digest":7},"layers":[]})"),
                IsEmpty());
    EXPECT_THAT(blobsOf(R"({"config":{"size":")" + digest('a') + R"("},"layers":[]})"), IsEmpty());
    EXPECT_THAT(blobsOf(R"({"config":{"digest":")" + digest('a') + R"("}})"), IsEmpty());
    for (const std::string& odd :
         {std::string("sha256:") + std::string(63, 'a'), std::string("sha256:") + std::string(65, 'a'),
          std::string("sha512:") + std::string(64, 'a'), std::string("sha256/") + std::string(64, 'a'),
          std::string("sha256:") + std::string(63, 'a') + "g", std::string("sha256:"), std::string()}) {
        EXPECT_THAT(blobsOf(R"({"config":{"digest":")" + odd + R"("},"layers":[]})"), IsEmpty()) << odd;
    }
}

TEST_F(OllamaStoreTest, NamesOtherModelsAsOllamaDoes) {
    const std::string manifest = makeManifest("registry.ollama.ai/library/m/t", digest('a'), digest('b'));
    makeManifest("registry.ollama.ai/library/z/t", digest('b'), digest('b'));
    makeManifest("registry.ollama.ai/library/m/other", digest('b'), digest('c'));
    makeManifest("registry.ollama.ai/someone/m/t", digest('a'), digest('c'));
    makeManifest("host/library/m/t", digest('a'), digest('c'));
    makeManifest("registry.ollama.ai/too-shallow", digest('a'), digest('b'));
    makeManifest("registry.ollama.ai/library/m/too/deep", digest('a'), digest('b'));
    const OllamaStore store(manifest);
    EXPECT_THAT(store.otherModelsWith(store.blobs(), {}),
                ElementsAre(Pair(blob('a'), ElementsAre("host/library/m:t", "someone/m:t")),
                            Pair(blob('b'), ElementsAre("m:other", "z:t"))));
}

TEST_F(OllamaStoreTest, ReadsNoFurtherWhenToldToStop) {
    const std::string manifest = makeManifest("registry.ollama.ai/library/m/t", digest('a'), digest('b'));
    makeManifest("registry.ollama.ai/library/z/t", digest('b'), digest('b'));
    const OllamaStore store(manifest);
    int asked = 0;
    EXPECT_THAT(store.otherModelsWith(store.blobs(),
                                      [&asked] {
                                          ++asked;
                                          return true;
                                      }),
                IsEmpty());
    EXPECT_EQ(asked, 1);
}

TEST_F(OllamaStoreTest, IsEmptyWhereThereIsNone) {
    const OllamaStore store("/tag");
    EXPECT_THAT(store.blobs(), IsEmpty());
    EXPECT_THAT(store.otherModelsWith({}, {}), IsEmpty());
}

} // namespace
} // namespace zentrill
