#include "ui/models/Arrangement.h"

#include "ui/models/DockerRow.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zentrill {
namespace {

using Names = std::vector<std::string>;

template <typename Record>
Names names(const std::vector<Record>& records) {
    Names result;
    std::ranges::transform(records, std::back_inserter(result), [](const Record& record) {
        if constexpr (requires { record.displayName(); }) {
            return record.displayName();
        } else {
            return record.name;
        }
    });
    return result;
}

std::vector<LocalModel> models() {
    return {{.name = "llama3:70b", .source = "Ollama", .sizeBytes = 40, .path = "/a"},
            {.name = "Llama3:8b", .source = "Ollama", .sizeBytes = 5, .path = "/b"},
            {.name = "org/Zeta", .source = "HuggingFace / vLLM", .sizeBytes = 0, .path = "/c"},
            {.name = "\xC3\xA4pfel.gguf", .source = "LM Studio (GGUF)", .sizeBytes = 40, .path = "/d"}};
}

TEST(ArrangementTest, LeavesTheOrderOfTheScan) {
    EXPECT_EQ(arranged(models(), {}), models());
}

TEST(ArrangementTest, PutsTheLargestFirstAndKeepsEqualOnesAsScanned) {
    EXPECT_EQ(names(arranged(models(), {.order = ListOrder::largestFirst})),
              (Names{"llama3:70b", "\xC3\xA4pfel.gguf", "Llama3:8b", "org/Zeta"}));
}

TEST(ArrangementTest, OrdersNamesWithoutRegardToCaseAndNumbersByValue) {
    EXPECT_EQ(names(arranged(models(), {.order = ListOrder::byName})),
              (Names{"Llama3:8b", "llama3:70b", "org/Zeta", "\xC3\xA4pfel.gguf"}));
}

TEST(ArrangementTest, FindsPartsOfNames) {
    const auto found = [](const char* needle) {
        return names(arranged(models(), {.needle = QString::fromUtf8(needle)}));
    };
    EXPECT_EQ(found("LLAMA"), (Names{"llama3:70b", "Llama3:8b"}));
    EXPECT_EQ(found("\xC3\x84PF"), (Names{"\xC3\xA4pfel.gguf"}));
    EXPECT_EQ(found("nothing"), Names());
    // Not by what all models of a source have in common.
    EXPECT_EQ(found("studio"), Names());
}

TEST(ArrangementTest, ComparesNames) {
    const auto before = [](const char* left, const char* right) {
        return isNameBefore(QString::fromUtf8(left), QString::fromUtf8(right));
    };
    EXPECT_TRUE(before("a2", "a10"));
    EXPECT_FALSE(before("a10", "a2"));
    EXPECT_TRUE(before("a", "ab"));
    EXPECT_TRUE(before("a09", "a10"));
    EXPECT_TRUE(before("a1b", "a01c"));
    EXPECT_FALSE(before("a01", "a1"));
    EXPECT_FALSE(before("a1", "a01"));
    EXPECT_FALSE(before("same", "same"));
    EXPECT_TRUE(before("", "a"));
    EXPECT_TRUE(before("a12345678901234567890", "a12345678901234567891"));
}

std::vector<DockerImage> images() {
    return {{.imageID = "sha256:aaa1", .tags = {"web:1"}, .size = "980kB"},
            {.imageID = "sha256:bbb2", .size = "1.2GB"},
            {.imageID = "sha256:ccc3", .tags = {"api:2", "api:latest"}, .size = "N/A"}};
}

TEST(ArrangementTest, OrdersImages) {
    EXPECT_EQ(names(arranged(images(), {.order = ListOrder::largestFirst})),
              (Names{"Untagged image", "web:1", "api:2, api:latest"}));
    EXPECT_EQ(names(arranged(images(), {.order = ListOrder::byName})),
              (Names{"api:2, api:latest", "Untagged image", "web:1"}));
}

TEST(ArrangementTest, FindsImagesAndContainers) {
    EXPECT_EQ(names(arranged(images(), {.needle = QStringLiteral("BBB")})), Names{"Untagged image"});
    EXPECT_EQ(names(arranged(images(), {.needle = QStringLiteral("latest")})), Names{"api:2, api:latest"});
    const std::vector<DockerContainer> containers{{.id = "1", .name = "job", .image = "web:1"},
                                                  {.id = "2", .name = "web", .image = "api:2"},
                                                  {.id = "3", .name = "db", .image = "pg"}};
    EXPECT_EQ(names(arranged(containers, {.order = ListOrder::byName, .needle = QStringLiteral("web")})),
              (Names{"job", "web"}));
}

TEST(ArrangementTest, KeepsTheCountsOfWhatIsNotShown) {
    const std::vector<DockerContainer> containers{{.id = "1", .name = "job", .image = "api:1"}};
    const std::vector<DockerRow> rows =
        dockerRows(containers, images(), {}, {.needle = QStringLiteral("web")});
    ASSERT_EQ(rows.size(), 4U);
    EXPECT_EQ(std::get<DockerHeading>(rows[0]).text(), QStringLiteral("Containers (1)"));
    EXPECT_EQ(std::get<DockerHeading>(rows[1]).text(), QStringLiteral("Images (3)"));
    EXPECT_EQ(std::get<DockerImage>(rows[3]).imageID, "sha256:aaa1");
}

} // namespace
} // namespace zentrill
