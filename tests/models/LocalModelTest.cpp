#include "models/LocalModel.h"

#include <gtest/gtest.h>

#include <limits>

namespace zentrill {
namespace {

LocalModel modelOfSize(std::int64_t sizeBytes) {
    return {.name = "a", .source = "Ollama", .sizeBytes = sizeBytes, .path = "/a"};
}

TEST(LocalModelTest, TheIdJoinsSourceAndPathWithANul) {
    const LocalModel model{.name = "llama3:latest", .source = "Ollama", .sizeBytes = 1, .path = "/m/latest"};
    EXPECT_EQ(model.id(), std::string("Ollama\0/m/latest", 16));
    const LocalModel shifted{
        .name = "llama3:latest", .source = "Ollama/m", .sizeBytes = 1, .path = "/latest"};
    EXPECT_NE(model.id(), shifted.id());
}

TEST(LocalModelTest, SizesBelowOneByteAreUnknown) {
    EXPECT_EQ(modelOfSize(0).sizeFormatted(), "Unknown size");
    EXPECT_EQ(modelOfSize(-1).sizeFormatted(), "Unknown size");
    EXPECT_EQ(modelOfSize(std::numeric_limits<std::int64_t>::min()).sizeFormatted(), "Unknown size");
}

TEST(LocalModelTest, SizesAreShownInMegabytesAndGigabytesOnly) {
    EXPECT_EQ(modelOfSize(999'999).sizeFormatted(), "1 MB");
    EXPECT_EQ(modelOfSize(850'000'000).sizeFormatted(), "850 MB");
    EXPECT_EQ(modelOfSize(4'660'000'000).sizeFormatted(), "4.66 GB");
}

TEST(LocalModelTest, ModelsAreEqualFieldByField) {
    const LocalModel model = modelOfSize(1);
    LocalModel other = model;
    EXPECT_EQ(model, other);
    other.isSelected = true;
    EXPECT_NE(model, other);
}

} // namespace
} // namespace zentrill
