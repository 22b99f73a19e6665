#include "ui/models/ListSummary.h"

#include <gtest/gtest.h>

#include <limits>

namespace zentrill {
namespace {

LocalModel model(std::string_view source, std::int64_t bytes) {
    return {.name = "m", .source = std::string(source), .sizeBytes = bytes};
}

TEST(ListSummaryTest, SumsModels) {
    EXPECT_EQ(modelTotals({model(ollamaSource, 4'000'000'000)}), QStringLiteral("1 model · 4 GB"));
    EXPECT_EQ(modelTotals({model(ollamaSource, 4'000'000'000), model(lmStudioSource, 660'000'000)}),
              QStringLiteral("2 models · 4.66 GB"));
    EXPECT_EQ(modelTotals({model(ollamaSource, 0), model(lmStudioSource, 0)}), QStringLiteral("2 models"));
}

TEST(ListSummaryTest, DoesNotOverflow) {
    const auto most = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(modelTotals({model(ollamaSource, most), model(ollamaSource, most)}),
              modelTotals({model(ollamaSource, most), model(ollamaSource, 0)}));
}

TEST(ListSummaryTest, SumsEachSource) {
    EXPECT_EQ(modelTotalsBySource({model(lmStudioSource, 1'000'000), model(ollamaSource, 4'000'000'000),
                                   model(ollamaSource, 0), model(lmStudioSource, 2'000'000)}),
              QStringLiteral("Ollama: 2 models · 4 GB\n"
                             "LM Studio (GGUF): 2 models · 3 MB\n"
                             "Without 1 model of unknown size.\n"
                             "Files that several models share are counted for each of them."));
}

TEST(ListSummaryTest, CountsDocker) {
    EXPECT_EQ(dockerTotals(1, 12), QStringLiteral("1 container · 12 images"));
    EXPECT_EQ(dockerTotals(0, 1), QStringLiteral("0 containers · 1 image"));
}

TEST(ListSummaryTest, SaysHowMuchIsShown) {
    EXPECT_EQ(shownText(12, 60), QStringLiteral("12 of 60 shown"));
    EXPECT_EQ(shownText(0, 10'000), QStringLiteral("0 of 10,000 shown"));
}

} // namespace
} // namespace zentrill
