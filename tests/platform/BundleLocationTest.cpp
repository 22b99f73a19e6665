#include "platform/BundleLocation.h"

#include "platform/FileSystem.h"

#include <gtest/gtest.h>

namespace zentrill {
namespace {

TEST(BundleLocationTest, LiesThreeLevelsAboveTheExecutable) {
    EXPECT_EQ(bundleLocation("/Applications/Zentrill.app/Contents/MacOS/Zentrill"),
              "/Applications/Zentrill.app");
    EXPECT_EQ(bundleLocation("/home/u/./Applications/My App.app//Contents/MacOS/x"),
              "/home/u/Applications/My App.app");
}

TEST(BundleLocationTest, StaysAtTheRootForAnExecutableThatIsNotDeepEnough) {
    EXPECT_EQ(bundleLocation("/bin/x"), "/");
    EXPECT_EQ(bundleLocation(""), "");
}

TEST(BundleLocationTest, IsAFolderForTheRunningProgram) {
    const auto attributes = FileSystem::shared().attributes(bundleLocation());
    ASSERT_TRUE(attributes);
    EXPECT_TRUE(attributes->isDirectory);
}

} // namespace
} // namespace zentrill
