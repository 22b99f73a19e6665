#include "models/OllamaManifestSizer.h"

#include "models/OllamaManifestFile.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace zentrill {
namespace {

std::string manifest(std::string_view configSize, std::string_view layers) {
    return std::string(R"({"schemaVersion":2,"config":{"digest":"sha256:00","size":)")
        .append(configSize)
        .append(R"(},"layers":[)")
        .append(layers)
        .append("]}");
}

std::optional<std::int64_t> sizeOf(std::string_view text) {
    return OllamaManifestSizer::sizeOfManifest(text);
}

TEST(OllamaManifestSizerTest, AddsTheConfigAndEveryLayer) {
    EXPECT_EQ(sizeOf(manifest(R"("512")", R"({"size":1000},{"size":2000})")), 3512);
    EXPECT_EQ(sizeOf(manifest("512", "")), 512);
    EXPECT_EQ(sizeOf(manifest("0", R"({"size":0})")), 0);
}

TEST(OllamaManifestSizerTest, ReadsWhatARegistrySends) {
    EXPECT_EQ(sizeOf(R"({
  "schemaVersion": 2,
  "mediaType": "application/vnd.docker.distribution.manifest.v2+json",
  "config": {
    "mediaType": "application/vnd.docker.container.image.v1+json",
    "digest": "sha256:3f8eb4da87fa7a3c9da615036b0dc418d31fef2a30b115ff33562588b32c691d",
    "size": 485
  },
  "layers": [
    {"mediaType": "application/vnd.ollama.image.model", "digest": "sha256:6a0746a1ec1a", "size": 4661211424},
    {"mediaType": "application/vnd.ollama.image.license", "digest": "sha256:4fa551d4f938", "size": 12403,
     "annotations": {"size": 7, "nested": [{"size": 9}]}}
  ],
  "annotations": {"size": 5, "config": {"size": 6}, "layers": [{"size": 8}]}
})"),
              485 + 4661211424 + 12403);
}

TEST(OllamaManifestSizerTest, ALayerWithoutAUsableSizeMakesItUnknown) {
    for (const char* layer :
         {"{}", R"({"size":null})", R"({"size":true})", R"({"size":12.5})", R"({"size":""})",
          R"({"size":" 1"})", R"({"size":"1e3"})", R"({"size":[1]})", R"({"size":{"size":1}})",
          R"({"Size":1})", R"({"size":-1})", R"({"size":9223372036854775808})", R"({"size":1e400})",
          R"({"other":{"size":1}})"}) {
        EXPECT_EQ(sizeOf(manifest("1", std::string(R"({"size":1},)") + layer)), std::nullopt) << layer;
    }
}

TEST(OllamaManifestSizerTest, AConfigWithoutAUsableSizeMakesItUnknown) {
    for (const char* size : {"true", "false", "null", "12.5", "\"\"", "\" 123\"", "\"12a\"", "-1", "\"-1\"",
                             "[512]", "{}", "18446744073709551616"}) {
        EXPECT_EQ(sizeOf(manifest(size, R"({"size":1})")), std::nullopt) << size;
    }
}

TEST(OllamaManifestSizerTest, ANumberCountsAsTheIntegerItEquals) {
    EXPECT_EQ(sizeOf(manifest("1e3", R"({"size":12.0})")), 1012);
    EXPECT_EQ(sizeOf(manifest("9007199254740993.0", "")), 9007199254740993);
    EXPECT_EQ(sizeOf(manifest("9223372036854775807", "")), 9223372036854775807);
}

TEST(OllamaManifestSizerTest, ASumPast64BitsIsUnknownAndNeverWraps) {
    EXPECT_EQ(sizeOf(manifest("0", R"({"size":9223372036854775807},{"size":0})")), 9223372036854775807);
    EXPECT_EQ(sizeOf(manifest("1", R"({"size":9223372036854775807})")), std::nullopt);
    EXPECT_EQ(
        sizeOf(manifest("0", R"({"size":9223372036854775807},{"size":9223372036854775807},{"size":2})")),
        std::nullopt);
}

TEST(OllamaManifestSizerTest, AnotherShapeIsUnknown) {
    for (const char* text : {"",
                             " ",
                             "null",
                             "7",
                             "\"text\"",
                             "[]",
                             "{}",
                             R"({"config":{"size":1}})",
                             R"({"layers":[]})",
                             R"({"config":[{"size":1}],"layers":[]})",
                             R"({"config":7,"layers":[]})",
                             R"({"config":["size",1],"layers":[]})",
                             R"({"config":{"size":1},"layers":{"size":1}})",
                             R"({"config":{"size":1},"layers":{"a":{"size":1}}})",
                             R"({"config":{"size":1},"layers":[1]})",
                             R"({"config":{"size":1},"layers":[[{"size":1}]]})",
                             R"({"config":{"size":1},"layers":[{"size":1},null]})",
                             R"({"config":{"size":1},"layers":[[],{"size":1}]})",
                             R"([{"config":{"size":1},"layers":[]}])",
                             R"({"a":{"config":{"size":1},"layers":[]}})"}) {
        EXPECT_EQ(sizeOf(text), std::nullopt) << text;
    }
}

TEST(OllamaManifestSizerTest, TextThatIsNotJSONIsUnknown) {
    const std::string good = manifest("1", R"({"size":1})");
    ASSERT_EQ(sizeOf(good), 2);
    for (std::size_t length = 0; length < good.size(); ++length) {
        EXPECT_EQ(sizeOf(std::string_view(good).substr(0, length)), std::nullopt) << length;
    }
    EXPECT_EQ(sizeOf(good + "x"), std::nullopt);
    EXPECT_EQ(sizeOf(good + std::string(1, '\0')), std::nullopt);
    EXPECT_EQ(sizeOf(good + good), std::nullopt);
    EXPECT_EQ(sizeOf(manifest("01", "")), std::nullopt);
    EXPECT_EQ(sizeOf(manifest("+1", "")), std::nullopt);
    EXPECT_EQ(sizeOf("{\"a\":\"\xff\",\"config\":{\"size\":1},\"layers\":[]}"), std::nullopt);
}

TEST(OllamaManifestSizerTest, OfTwoMembersWithOneNameTheLastCounts) {
    EXPECT_EQ(sizeOf(R"({"config":{"size":1,"size":2},"layers":[{"size":3,"size":4}]})"), 6);
    EXPECT_EQ(sizeOf(R"({"config":{"size":1},"layers":[{"size":9}],"layers":[],"config":{"size":2}})"), 2);
    EXPECT_EQ(sizeOf(R"({"config":{"size":1},"layers":[7],"layers":[{"size":1}]})"), 2);
    EXPECT_EQ(sizeOf(R"({"config":{"size":1},"layers":[],"config":{}})"), std::nullopt);
    EXPECT_EQ(sizeOf(R"({"config":{"size":1,"size":true},"layers":[]})"), std::nullopt);
}

TEST(OllamaManifestSizerTest, DeepNestingIsUnknownAndHarmless) {
    constexpr std::size_t depth = 1'000'000;
    EXPECT_EQ(sizeOf(std::string(depth, '[')), std::nullopt);
    std::string objects;
    for (std::size_t level = 0; level < depth; ++level) {
        objects += R"({"a":)";
    }
    EXPECT_EQ(sizeOf(objects), std::nullopt);
    const auto nested = [](std::size_t levels) {
        return R"({"config":{"size":1},"layers":[],"a":)" + std::string(levels, '[') +
               std::string(levels, ']') + "}";
    };
    EXPECT_EQ(sizeOf(nested(511)), 1);
    EXPECT_EQ(sizeOf(nested(512)), std::nullopt);
}

class OllamaManifestFileTest : public testing::Test {
protected:
    test::TemporaryDirectory folder;
};

TEST_F(OllamaManifestFileTest, ReadsAFileAndFollowsALink) {
    const std::string file = folder.makeFile("latest", manifest("512", R"({"size":1000})"));
    EXPECT_EQ(OllamaManifestSizer::size(file), 1512);
    EXPECT_EQ(OllamaManifestSizer::size(folder.makeLink("link", "latest")), 1512);
}

TEST_F(OllamaManifestFileTest, WhatCannotBeReadIsUnknown) {
    EXPECT_EQ(OllamaManifestSizer::size(folder.path("missing")), std::nullopt);
    EXPECT_EQ(OllamaManifestSizer::size(folder.makeLink("dangling", "nowhere")), std::nullopt);
    EXPECT_EQ(OllamaManifestSizer::size(folder.makeLink("loop", "loop")), std::nullopt);
    EXPECT_EQ(OllamaManifestSizer::size(folder.makeDirectory("directory")), std::nullopt);
    EXPECT_EQ(OllamaManifestSizer::size(folder.makeFile("empty")), std::nullopt);
    EXPECT_EQ(OllamaManifestSizer::size(""), std::nullopt);
    const std::string file = folder.makeFile("file", manifest("1", ""));
    EXPECT_EQ(OllamaManifestSizer::size(file + std::string("\0tail", 5)), std::nullopt);
}

// Each of these would hold a plain read up, or have no end.
TEST_F(OllamaManifestFileTest, WhatIsNoFileIsUnknownAtOnce) {
    const std::string fifo = folder.path("fifo");
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_EQ(OllamaManifestSizer::size(fifo), std::nullopt);
    EXPECT_EQ(OllamaManifestSizer::size(folder.makeLink("fifo-link", "fifo")), std::nullopt);
    EXPECT_EQ(OllamaManifestSizer::size(folder.makeLink("zero", "/dev/zero")), std::nullopt);
    EXPECT_EQ(OllamaManifestSizer::size(folder.makeLink("null", "/dev/null")), std::nullopt);

    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string socketPath = folder.path("socket");
    ASSERT_LT(socketPath.size(), sizeof address.sun_path);
    socketPath.copy(static_cast<char*>(address.sun_path), socketPath.size());
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_GE(socket, 0);
    ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(OllamaManifestSizer::size(socketPath), std::nullopt);
    ::close(socket);
}

#ifdef __linux__
// The kernel's own files state no length, like one that grows while it is read.
TEST_F(OllamaManifestFileTest, AFileLongerThanItStatesIsReadWhole) {
    std::ifstream stream("/proc/self/auxv");
    const std::string content(std::istreambuf_iterator<char>(stream), {});
    ASSERT_GT(content.size(), 16U);
    EXPECT_EQ(ollamaManifestText("/proc/self/auxv"), content);
}
#endif

TEST_F(OllamaManifestFileTest, AFileLongerThanAnyManifestIsNotRead) {
    constexpr std::uintmax_t limit = 4U << 20U;
    const std::string longest =
        folder.makeFile("longest", manifest("1", "") + std::string(limit - manifest("1", "").size(), ' '));
    ASSERT_EQ(std::filesystem::file_size(longest), limit);
    EXPECT_EQ(OllamaManifestSizer::size(longest), 1);
    EXPECT_EQ(OllamaManifestSizer::size(folder.makeFile(
                  "longer", manifest("1", "") + std::string(limit + 1 - manifest("1", "").size(), ' '))),
              std::nullopt);
    const std::string huge = folder.makeFile("huge", manifest("1", ""));
    std::filesystem::resize_file(huge, 100'000'000'000);
    EXPECT_EQ(OllamaManifestSizer::size(huge), std::nullopt);
}

} // namespace
} // namespace zentrill
