#include "controller/ApplicationUninstallNotice.h"

#include <gtest/gtest.h>

namespace zentrill {
namespace {

TEST(ApplicationUninstallNotice, ACleanRunSaysHowMuchWasRemoved) {
    const ApplicationUninstallNotice notice(7, 2, {}, {});
    EXPECT_EQ(notice.title, "Uninstallation Completed");
    EXPECT_EQ(notice.message, "Removed 7 filesystem items for 2 application(s).");
}

TEST(ApplicationUninstallNotice, RemainingDataAreListedInOrder) {
    const ApplicationUninstallNotice notice(0, 1, {{"b", {"/z", "/a"}}, {"B", {"/y"}}, {"a", {"/x"}}}, {});
    EXPECT_EQ(notice.title, "Uninstallation Completed with Data Remaining");
    EXPECT_EQ(notice.message, "Removed 0 filesystem items for 1 application(s).\n"
                              "Remaining selected-app data (not deleted; review before removing manually):\n"
                              "B: /y\n"
                              "a: /x\n"
                              "b: /a\n"
                              "b: /z");
}

TEST(ApplicationUninstallNotice, FailuresKeepTheirOrderAndComeLast) {
    const ApplicationUninstallNotice notice(3, 1, {{"Tool", {"/data"}}}, {"second.", "first."});
    EXPECT_EQ(notice.title, "Uninstallation Completed with Errors");
    EXPECT_EQ(notice.message, "Removed 3 filesystem items for 1 application(s).\n"
                              "Remaining selected-app data (not deleted; review before removing manually):\n"
                              "Tool: /data\n"
                              "Errors:\n"
                              "second.\n"
                              "first.");
    const ApplicationUninstallNotice one(1, 1, {}, {"bad."});
    EXPECT_EQ(one.title, "Uninstallation Completed with Errors");
    EXPECT_EQ(one.message, "Removed 1 filesystem items for 1 application(s).\nErrors:\nbad.");
}

} // namespace
} // namespace zentrill
