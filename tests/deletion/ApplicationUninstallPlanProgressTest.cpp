#include "ApplicationUninstallPlanFixture.h"
#include "deletion/PlanRecord.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <vector>

namespace zentrill {
namespace {

using test::ApplicationUninstallPlans;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(ApplicationUninstallPlans, EndWhenTheyAreToldTo) {
    make("/Applications/VendorApp.app/Contents/Info.plist");
    make("~/Library/Caches/com.vendor.app/file");
    const ApplicationUninstallPlan never =
        plan("VendorApp", SafetyShield::off, {.shouldStop = [] { return true; }});
    EXPECT_TRUE(never.stopped);
    EXPECT_THAT(never.items, IsEmpty());
    // Whenever that is: between entries, in one, or while what is kept or remains is sized.
    make("~/Library/Application Support/com.openai.chat/state");
    make("~/.codex/.ssh/id");
    for (int most = 1; most < 30; ++most) {
        std::atomic<int> asked = 0;
        const ApplicationUninstallPlan some =
            plan("ChatGPT", SafetyShield::on, {.shouldStop = [&asked, most] { return ++asked == most; }});
        EXPECT_EQ(some.stopped, asked >= most) << most;
        EXPECT_LE(asked, most + 3) << "a stopped plan asks no more, but each thread may be about to";
    }
    std::atomic<int> asked = 0;
    const ApplicationUninstallPlan oneEntry =
        plan("VendorApp", SafetyShield::off, {.shouldStop = [&asked] { return ++asked == 2; }});
    EXPECT_TRUE(oneEntry.stopped);
    EXPECT_THAT(itemPaths(oneEntry), ElementsAre(expanded("/Applications/VendorApp.app")));
}

TEST_F(ApplicationUninstallPlans, TellEachItemWhenItIsBegunAndOnceWhatBecomesOfIt) {
    make("~/.gemini/oauth_creds.json", "secret");
    make("~/.gemini/tmp/data", "data");
    make("~/Library/Application Support/io.datasette.llm/logs.db", "1234");
    make("~/Library/Application Support/io.datasette.llm/other", "12");
    make("~/Library/Application Support/Claude/deep/file", "12345");
    for (const char* tool : {"Gemini", "LLM CLI", "Claude"}) {
        for (const SafetyShield shield : {SafetyShield::on, SafetyShield::off}) {
            std::vector<std::string> told;
            PlanRecord sum{.plan = {}, .listedItems = 100, .listedFailures = 100};
            PlanOptions options;
            options.progress = [&](const std::string& item, const DeletionPlan& news) {
                sum.append({.plan = news});
                if (told.empty() || told.back() != item) {
                    told.push_back(item);
                }
            };
            const ApplicationUninstallPlan plan = this->plan(tool, shield, options);
            EXPECT_EQ(told, itemPaths(plan)) << tool;
            EXPECT_EQ(sum.plan.removed.logicalBytes, plan.removedBytes()) << tool;
            EXPECT_EQ(sum.plan.freedBytes, plan.freedBytes()) << tool;
        }
    }
}

TEST_F(ApplicationUninstallPlans, ListNoMoreThanAskedFor) {
    for (int i = 0; i < 5; ++i) {
        make("~/.gemini/" + std::to_string(i), "x");
    }
    const ApplicationUninstallPlan plan = this->plan("Gemini", SafetyShield::on, {.listedItems = 2});
    EXPECT_EQ(plan.items.at(0).plan.uncertainData.listed.size(), 2U);
    EXPECT_EQ(plan.items.at(0).plan.uncertainData.count, 5U);
    EXPECT_EQ(plan.items.at(0).logicalBytes, 5);
}

} // namespace
} // namespace zentrill
