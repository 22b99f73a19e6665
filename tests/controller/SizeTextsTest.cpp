#include "controller/sizes/SizeTexts.h"

#include "ControllerFixture.h"

#include <gtest/gtest.h>

namespace zentrill {
namespace {

TEST(SizeTexts, SayHowMuchOfASelectionWouldGo) {
    EXPECT_EQ(selectionSizeText({.goingBytes = 1'240'000'000}), QStringLiteral("1.24 GB would go"));
    EXPECT_EQ(selectionSizeText({.goingBytes = 5000, .isWhole = false}),
              QStringLiteral("at least 5 KB would go"));
}

TEST(SizeTexts, ExplainOnlyAModelOfWhichSomethingStays) {
    ModelDeletionPlan plan;
    plan.files.freedBytes = 4096;
    EXPECT_EQ(modelNote(plan), QString());
    plan.bytesElsewhere = 9'000'000'000;
    EXPECT_EQ(modelNote(plan), QStringLiteral("Deleting it frees 4.1 KB.\n"
                                              "9 GB lie elsewhere, behind links in its folder, and stay."));
    plan.bytesElsewhere = 0;
    plan.sharedBlobs = {{.path = "/b", .logicalBytes = 4'660'000'000, .models = {"b:1", "a\n:1"}},
                        {.path = "/c", .logicalBytes = 1000, .models = {"b:1"}}};
    EXPECT_EQ(modelNote(plan), QStringLiteral("Deleting it frees 4.1 KB.\n"
                                              "4.66 GB of it stay, shared with a\\n:1, b:1."));
}

TEST(SizeTexts, NameTheFirstOfManySharingModels) {
    ModelDeletionPlan plan;
    plan.sharedBlobs = {{.path = "/b", .logicalBytes = 1}};
    for (const char* name : {"a", "b", "c", "d", "e", "f", "g", "h"}) {
        plan.sharedBlobs.front().models.emplace_back(name);
    }
    EXPECT_EQ(modelNote(plan).section(QLatin1Char('\n'), 1),
              QStringLiteral("1 byte of it stay, shared with a, b, c, d, e, f and 2 more."));
}

TEST(SizeTexts, PutASizeToWhatRemains) {
    EXPECT_EQ(remainingDataNote({"/h/.a", "/h/.b\n"}, {}), QStringLiteral("What remains:\n/h/.a\n/h/.b\\n"));
    EXPECT_EQ(remainingDataNote({"/h/.a", "/h/.b"}, {12, 5000}),
              QStringLiteral("What remains:\n/h/.a · 12 bytes\n/h/.b · 5 KB"));
    EXPECT_EQ(remainingDataNote({}, {}), QString());
}

} // namespace
} // namespace zentrill
