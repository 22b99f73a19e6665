#include "support/confinement/Landlock.h"

#include "Canary.h"
#include "support/ChildProcess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zentrill {
namespace {

using confinement::enterLandlock;
using test::Canary;
using test::passesInChild;
using testing::IsSubsetOf;

class LandlockTest : public testing::Test {
protected:
    void SetUp() override {
        if (confinement::landlockVersion() == 0) {
            GTEST_SKIP() << "needs a kernel with Landlock";
        }
    }
};

/// What the first ones lack is no way to remove or to write anything.
TEST_F(LandlockTest, EveryVersionKeepsWhatIsOutside) {
    for (const int version : {1, 2, 3}) {
        const Canary canary;
        const test::TemporaryDirectory inside;
        EXPECT_TRUE(passesInChild([&] {
            enterLandlock({inside.path()}, version);
            const std::vector<std::string> working = canary.workingAttempts(inside.path());
            if (version < 3) {
                EXPECT_THAT(working, IsSubsetOf({"truncate", "read and empty"})) << version;
            } else if (confinement::landlockVersion() >= 3) {
                EXPECT_THAT(working, testing::IsEmpty()) << version;
            }
        }));
    }
}

TEST_F(LandlockTest, TheFirstVersionMovesNothingFromOneFolderToAnother) {
    const test::TemporaryDirectory inside;
    const std::string file = inside.makeFile("one/file");
    inside.makeDirectory("other");
    EXPECT_TRUE(passesInChild([&] {
        enterLandlock({inside.path()}, 1);
        EXPECT_NE(std::rename(file.c_str(), inside.path("other/file").c_str()), 0);
        EXPECT_EQ(std::rename(file.c_str(), inside.path("one/renamed").c_str()), 0);
    }));
}

TEST_F(LandlockTest, AFolderThatWasOpenBeforeIsNoWayOut) {
    const Canary canary;
    const std::vector<std::string> before = canary.state();
    const test::TemporaryDirectory inside;
    EXPECT_TRUE(passesInChild([&] {
        const int opened = ::open(canary.path().c_str(), O_DIRECTORY | O_CLOEXEC);
        ASSERT_GE(opened, 0);
        enterLandlock({inside.path()});
        EXPECT_NE(::unlinkat(opened, "file", 0), 0);
        EXPECT_NE(::unlinkat(opened, "empty", AT_REMOVEDIR), 0);
        EXPECT_NE(::mkdirat(opened, "other", 0700), 0);
    }));
    EXPECT_EQ(canary.state(), before);
}

} // namespace
} // namespace zentrill
