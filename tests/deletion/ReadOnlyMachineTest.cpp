#include "support/ReadOnlyMachine.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zentrill {
namespace {

/// The program runs inside one, see SafeSurroundings.cpp.
TEST(ReadOnlyMachine, NothingOutsideTheScratchFoldersCanBeChanged) {
    if (!test::ReadOnlyMachine::possible()) {
        GTEST_SKIP() << "needs root to make the machine read-only";
    }
    for (const char* folder : {"/", "/etc", "/usr", "/usr/bin", "/var", "/root", "/dev"}) {
        const std::string probe = std::string(folder) + "/zentrill-probe";
        EXPECT_EQ(::mkdir(probe.c_str(), 0700), -1) << folder;
        EXPECT_EQ(errno, EROFS) << folder;
    }
    for (const char* folder : {"/tmp", "/dev/shm"}) {
        const std::string probe = std::string(folder) + "/zentrill-probe";
        EXPECT_EQ(::mkdir(probe.c_str(), 0700), 0) << folder;
        EXPECT_EQ(::rmdir(probe.c_str()), 0) << folder;
    }
}

} // namespace
} // namespace zentrill
