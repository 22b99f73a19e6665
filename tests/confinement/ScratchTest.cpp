#include "ForcedRung.h"
#include "support/ChildProcess.h"
#include "support/Processes.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zentrill {
namespace {

using confinement::Rung;
namespace fs = std::filesystem;

/// What a confined process leaves behind goes, on each rung that this machine allows.
class ScratchTest : public testing::TestWithParam<Rung> {
protected:
    void SetUp() override {
        if (const auto obstacle = test::rungObstacle(GetParam())) {
            GTEST_SKIP() << *obstacle;
        }
        fs::permissions(folder_.path(), fs::perms(01777));
    }

    /// Whether nothing is left of a process that confined itself, made a few things in its scratch folders,
    /// and ended by `signal`, or by itself where that is 0.
    void expectNothingLeftAfter(int signal) const {
        std::array<int, 2> told{};
        ASSERT_EQ(::pipe2(told.data(), O_CLOEXEC), 0);
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            try {
                leaveThings(told[1]);
                ::kill(::getpid(), signal);
                ::_exit(0);
            } catch (const std::exception& error) {
                std::fprintf(stderr, "%s\n", error.what());
                ::_exit(1);
            }
        }
        ::close(told[1]);
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_EQ(signal == 0 ? WEXITSTATUS(status) : WTERMSIG(status), signal);
        EXPECT_EQ(signal == 0, WIFEXITED(status));
        std::string memory(512, '\0');
        const ssize_t length = ::read(told[0], memory.data(), memory.size());
        ASSERT_GT(length, 0);
        memory.resize(static_cast<std::size_t>(length));
        ::close(told[0]);
        EXPECT_TRUE(test::eventually([&] { return fs::is_empty(folder_.path()) && !fs::exists(memory); }));
    }

private:
    void leaveThings(int memoryPipe) const {
        ::setenv("TMPDIR", folder_.path().c_str(), 1);
        test::takeRung(GetParam());
        const std::string memory = std::getenv("ZENTRILL_MEMORY");
        for (const fs::path scratch : std::set<std::string>{std::getenv("TMPDIR"), memory}) {
            fs::create_directories(scratch / "closed/sub");
            std::ofstream(scratch / "closed/sub/file") << "content";
            fs::permissions(scratch / "closed", fs::perms::none);
        }
        static_cast<void>(!::write(memoryPipe, memory.data(), memory.size()));
    }

    test::TemporaryDirectory folder_;
};

TEST_P(ScratchTest, GoesWithTheProcess) {
    expectNothingLeftAfter(0);
}

TEST_P(ScratchTest, GoesWhenTheProcessIsKilled) {
    expectNothingLeftAfter(SIGKILL);
}

TEST_P(ScratchTest, ItsCleanerIsNoChildOfTheProcess) {
    EXPECT_TRUE(test::passesInChild([] {
        test::takeRung(GetParam());
        EXPECT_TRUE(test::hasNoChildren());
    }));
}

INSTANTIATE_TEST_SUITE_P(Each, ScratchTest, testing::ValuesIn(confinement::rungs),
                         [](const testing::TestParamInfo<Rung>& rung) {
                             return std::string(nameOf(rung.param));
                         });

} // namespace
} // namespace zentrill
