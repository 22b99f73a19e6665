#include "deletion/PlanTeller.h"

#include "DeletionCases.h"
#include "DeletionForm.h"
#include "DeletionPlanFixture.h"
#include "deletion/PlanRecord.h"
#include "deletion/SafeDeletionEngine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

namespace zentrill {
namespace {

using test::DeletionPlans;
using test::everything;
using test::newEngine;
using test::shielded;
using test::unshielded;
using testing::SizeIs;
namespace fs = std::filesystem;

/// All that a plan told while it was made.
struct Told {
    std::vector<std::string> items;
    PlanRecord sum{.plan = {}, .listedItems = SIZE_MAX, .listedFailures = SIZE_MAX};

    [[nodiscard]] PlanOptions listening() {
        PlanOptions options = everything;
        options.progress = [this](const std::string& item, const DeletionPlan& news) {
            items.push_back(item);
            sum.append({.plan = news});
        };
        return options;
    }
};

TEST_F(DeletionPlans, TellWhileTheyAreMadeWhatAddsUpToThem) {
    for (int i = 0; i < 200; ++i) {
        const std::string folder = "tree/" + std::to_string(i % 20) + "/" + std::to_string(i);
        folder_.makeFile(folder + "/file", "four");
        folder_.makeFile(folder + "/id.key", "x");
    }
    fs::create_hard_link(folder_.path("tree/0/0/file"), folder_.path("tree/1/name"));
    const std::string tree = folder_.path("tree");
    Told told;
    const DeletionPlan plan = engine_.plan(tree, shielded, told.listening());
    EXPECT_EQ(plan, this->plan(shielded)); // Listening changes nothing.
    EXPECT_THAT(told.items, testing::Each(tree));
    EXPECT_GE(told.items.size(), 2U);
    EXPECT_EQ(told.sum.plan.removed.count, plan.removed.count);
    EXPECT_EQ(told.sum.plan.removed.logicalBytes, plan.removed.logicalBytes);
    EXPECT_EQ(told.sum.plan.freedBytes, plan.freedBytes);
    EXPECT_EQ(told.sum.plan.recognizedCredentials.count, plan.recognizedCredentials.count);
    EXPECT_THAT(told.sum.plan.recognizedCredentials.listed,
                testing::UnorderedElementsAreArray(plan.recognizedCredentials.listed));
    EXPECT_THAT(told.sum.plan.removed.listed, testing::UnorderedElementsAreArray(plan.removed.listed));
}

TEST_F(DeletionPlans, TellBeforeTheyHaveReadAnything) {
    folder_.makeFile("tree/file");
    PlanOptions options;
    bool asked = false;
    bool toldFirst = false;
    options.shouldStop = [&asked] {
        asked = true;
        return false;
    };
    options.progress = [&](const std::string& /*item*/, const DeletionPlan& /*news*/) {
        toldFirst = toldFirst || !asked;
    };
    EXPECT_TRUE(engine_.plan(folder_.path("tree"), unshielded, options).itemGoes);
    EXPECT_TRUE(toldFirst);
    toldFirst = false;
    asked = false;
    EXPECT_TRUE(engine_.plan(folder_.path("missing"), unshielded, options).isEmpty());
    EXPECT_FALSE(toldFirst);
}

TEST_F(DeletionPlans, TellAgainAfterAMomentHoweverLongTheyTake) {
    for (int i = 0; i < 100; ++i) {
        folder_.makeFile("tree/" + std::to_string(i));
    }
    std::vector<std::uint64_t> counts;
    PlanOptions options;
    options.progress = [&counts](const std::string& /*item*/, const DeletionPlan& news) {
        counts.push_back(news.removed.count);
    };
    // Slow enough that a stretch of entries takes longer than the interval.
    const SafeDeletionEngine alone = newEngine(DeletionConcurrency{});
    options.shouldStop = [] {
        std::this_thread::sleep_for(PlanTeller::interval / PlanTeller::entriesBetween * 2);
        return false;
    };
    EXPECT_EQ(alone.plan(folder_.path("tree"), unshielded, options).removed.count, 101U);
    EXPECT_THAT(counts, SizeIs(testing::Ge(4)));
    EXPECT_THAT(counts, testing::Each(testing::Le(2 * PlanTeller::entriesBetween)));
}

} // namespace
} // namespace zentrill
