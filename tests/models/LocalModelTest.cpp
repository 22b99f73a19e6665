#include "models/LocalModel.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <limits>
#include <string>
#include <unordered_set>
#include <vector>

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

TEST(LocalModelTest, EveryFieldTakesPartInEqualityAndHash) {
    const std::vector<std::function<void(LocalModel&)>> changes{
        [](LocalModel& model) { model.name += "x"; },       [](LocalModel& model) { model.source += "x"; },
        [](LocalModel& model) { ++model.sizeBytes; },       [](LocalModel& model) { model.path += "x"; },
        [](LocalModel& model) { model.isSelected = true; },
    };
    std::unordered_set<LocalModel> distinct{modelOfSize(1), modelOfSize(1)};
    EXPECT_EQ(distinct.size(), 1U);
    std::unordered_set<std::size_t> hashes{std::hash<LocalModel>()(modelOfSize(1))};
    for (std::size_t field = 0; field < changes.size(); ++field) {
        LocalModel other = modelOfSize(1);
        changes[field](other);
        EXPECT_NE(other, modelOfSize(1)) << "field " << field;
        EXPECT_TRUE(hashes.insert(std::hash<LocalModel>()(other)).second) << "field " << field;
        distinct.insert(other);
    }
    EXPECT_EQ(distinct.size(), changes.size() + 1);
}

} // namespace
} // namespace zentrill
