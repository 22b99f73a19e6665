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
#include <vector>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zentrill {
namespace {

using confinement::Rung;
namespace fs = std::filesystem;

/// What a confined process leaves behind goes, on each rung that this machine allows.
class ScratchTest : public testing::Test {
protected:
    void SetUp() override {
        if (rungs_.empty()) {
            GTEST_SKIP() << "needs a rung within the one that confines this program";
        }
        fs::permissions(folder_.path(), fs::perms(01777));
    }

    void expectNothingLeftAfter(int signal) const {
        for (const Rung rung : rungs_) {
            SCOPED_TRACE(nameOf(rung));
            expectNothingLeftAfter(signal, rung);
        }
    }

    std::vector<Rung> rungs_ = test::allowedRungs();

private:
    /// Whether nothing is left of a process that confined itself, made a few things in its scratch folders,
    /// and ended by `signal`, or by itself where that is 0.
    void expectNothingLeftAfter(int signal, Rung rung) const {
        std::array<int, 2> told{};
        ASSERT_EQ(::pipe2(told.data(), O_CLOEXEC), 0);
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            try {
                leaveThings(rung, told[1]);
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

    void leaveThings(Rung rung, int memoryPipe) const {
        ::setenv("TMPDIR", folder_.path().c_str(), 1);
        test::takeRung(rung);
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

TEST_F(ScratchTest, GoesWithTheProcess) {
    expectNothingLeftAfter(0);
}

TEST_F(ScratchTest, GoesWhenTheProcessIsKilled) {
    expectNothingLeftAfter(SIGKILL);
}

TEST_F(ScratchTest, ItsCleanerIsNoChildOfTheProcess) {
    for (const Rung rung : rungs_) {
        EXPECT_TRUE(test::passesInChild([rung] {
            test::takeRung(rung);
            EXPECT_TRUE(test::hasNoChildren());
        })) << nameOf(rung);
    }
}

} // namespace
} // namespace zentrill
