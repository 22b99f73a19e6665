#include "deletion/DeletionReport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zentrill {
namespace {

using testing::ElementsAre;

TEST(DeletionReport, MergesListByListInOrder) {
    DeletionReport report{{"/b"}, {"/key"}, {"/f: failed"}};
    report.merge({{"/a", "/c"}, {"/auth"}, {"/e: failed"}});
    EXPECT_THAT(report.removed, ElementsAre("/b", "/a", "/c"));
    EXPECT_THAT(report.preserved, ElementsAre("/key", "/auth"));
    EXPECT_THAT(report.failures, ElementsAre("/f: failed", "/e: failed"));
}

TEST(DeletionReport, IsTheOtherOneWhenItWasEmptyAndItselfWhenTheOtherOneIs) {
    const DeletionReport some{{"/a"}, {"/key"}, {"/f: failed"}};
    DeletionReport report;
    report.merge(some);
    EXPECT_EQ(report, some);
    report.merge({});
    EXPECT_EQ(report, some);
}

TEST(DeletionReport, SucceedsWithoutFailuresAndChangesWhatItRemoves) {
    EXPECT_TRUE(DeletionReport{}.succeeded());
    EXPECT_FALSE(DeletionReport{}.changedAnything());
    EXPECT_FALSE((DeletionReport{{}, {}, {"failed"}}).succeeded());
    EXPECT_FALSE((DeletionReport{{}, {"/key"}, {}}).changedAnything());
    EXPECT_TRUE((DeletionReport{{"/a"}, {}, {"failed"}}).changedAnything());
}

} // namespace
} // namespace zentrill
