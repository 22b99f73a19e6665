#include "process/ChildProcess.h"

#include "platform/Pipe.h"
#include "process/AbandonedChildren.h"
#include "process/ChildEndNotice.h"
#include "process/ChildEnding.h"
#include "process/OutputPump.h"
#include "process/SpawnChild.h"
#include "support/FailingSystemCall.h"
#include "support/Processes.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <string>
#include <system_error>
#include <utility>

#include <sys/wait.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/syscall.h>
#endif

namespace zentrill {
namespace {

using namespace std::chrono_literals;
using test::eventually;
using test::hasNoChildren;
using Clock = std::chrono::steady_clock;

/// A child in the group of this process, blocked on a pipe until it is ended from outside.
pid_t forkMember(void (*onTermination)(int)) {
    const Pipe ready = Pipe::open();
    const pid_t pid = ::fork();
    if (pid == 0) {
        const char byte = 0;
        if (::signal(SIGTERM, onTermination) == SIG_ERR || ::write(ready.writing.get(), &byte, 1) != 1) {
            ::_exit(1);
        }
        for (;;) {
            ::pause();
        }
    }
    char byte = 0;
    EXPECT_TRUE(eventually([&] { return ::read(ready.reading.get(), &byte, 1) == 1; }));
    return pid;
}

ChildProcess spawnSleeper() {
    const Pipe pipe = Pipe::open();
    SpawnedChild spawned = spawnChild("/bin/sleep", {"600"}, {}, pipe.writing.get(), pipe.writing.get());
    if (!spawned.child) {
        throw std::system_error(spawned.error);
    }
    return std::move(*spawned.child);
}

TEST(ChildProcess, AMemberOfThisProcesssGroupDoesNotOwnIt) {
    ChildProcess child(forkMember(SIG_DFL));
    EXPECT_FALSE(child.ownsGroup());
    // Would end this test as well.
    child.signalGroup(SIGKILL);
    EXPECT_FALSE(test::isGone(child.id()));
}

TEST(ChildProcess, IsKilledAndReapedWhenDroppedEarly) {
    {
        const ChildProcess child = spawnSleeper();
        EXPECT_TRUE(child.ownsGroup());
    }
    EXPECT_TRUE(eventually([] {
        abandoned_children::reapEnded();
        return hasNoChildren();
    }));
}

TEST(ChildProcess, TakesItsGroupAlongWhenDroppedEarly) {
    const Pipe pipe = Pipe::open();
    std::string told;
    {
        const SpawnedChild spawned = spawnChild("/bin/sh", {"-c", "/bin/sleep 600 & echo $!; wait"}, {},
                                                pipe.writing.get(), pipe.writing.get());
        ASSERT_TRUE(spawned.child);
        ASSERT_TRUE(eventually([&] {
            char byte = 0;
            while (::read(pipe.reading.get(), &byte, 1) == 1) {
                told += byte;
            }
            return told.ends_with('\n');
        }));
    }
    EXPECT_TRUE(eventually([&] { return test::isGone(std::stoi(told)); }));
    EXPECT_TRUE(eventually([] {
        abandoned_children::reapEnded();
        return hasNoChildren();
    }));
}

TEST(ChildProcess, OneThatStillRunsIsReapedLater) {
    ChildProcess child = spawnSleeper();
    EXPECT_EQ(child.reap(), -1);
    EXPECT_EQ(child.reap(), -1);
    EXPECT_TRUE(eventually([] {
        abandoned_children::reapEnded();
        return hasNoChildren();
    }));
}

#ifdef __linux__
/// The error says nothing about the children.
bool makeWaitidFail() {
    return test::makeSystemCallFail(SYS_waitid, ENOMEM);
}

TEST(ChildProcess, IsNotGivenUpForAnErrorThatDoesNotSayThatItIsGone) {
    EXPECT_TRUE(test::holdsInForkedChild([] {
        ChildProcess child = spawnSleeper();
        const pid_t pid = child.id();
        if (!makeWaitidFail()) {
            return false;
        }
        child.signal(SIGTERM);
        const bool isEnded = eventually([pid] { return test::isGone(pid); });
        ::kill(pid, SIGKILL);
        int status = 0;
        return ::waitpid(pid, &status, 0) == pid && isEnded && WIFSIGNALED(status) &&
               WTERMSIG(status) == SIGTERM;
    }));
}

TEST(ChildProcess, OneOfUnknownStateIsKilledAndReapedLater) {
    EXPECT_TRUE(test::holdsInForkedChild([] {
        ChildProcess child = spawnSleeper();
        const pid_t pid = child.id();
        if (!makeWaitidFail() || child.reap() != -1) {
            return false;
        }
        const bool isReaped = eventually([] {
            abandoned_children::reapEnded();
            return ::waitpid(-1, nullptr, WNOHANG) < 0 && errno == ECHILD;
        });
        if (!isReaped) {
            ::kill(pid, SIGKILL);
        }
        return isReaped;
    }));
}
#endif

TEST(AbandonedChildren, ARunningOneStaysRemembered) {
    ChildProcess child = spawnSleeper();
    const pid_t pid = child.id();
    // Two owners, so that this one can look on while the other waits.
    abandoned_children::add(pid);
    abandoned_children::reapEnded();
    EXPECT_FALSE(test::isGone(pid));
    child.signal(SIGKILL);
    EXPECT_TRUE(eventually([] {
        abandoned_children::reapEnded();
        return hasNoChildren();
    }));
}

class ChildEndNoticeTest : public testing::TestWithParam<ChildEndNotice::Method> {};

TEST_P(ChildEndNoticeTest, TellsTheEndAndLeavesTheChildToBeReaped) {
    ChildProcess child = spawnSleeper();
    const ChildEndNotice notice(child.id(), GetParam());
    EXPECT_FALSE(notice.wait(20ms));
    child.signal(SIGTERM);
    EXPECT_TRUE(notice.wait(20s));
    EXPECT_TRUE(notice.wait(0ms));
    EXPECT_EQ(child.reap(), SIGTERM);
}

TEST_P(ChildEndNoticeTest, TellsAnEndThatCameBeforeTheQuestion) {
    ChildProcess child = spawnSleeper();
    child.signal(SIGTERM);
    ASSERT_TRUE(eventually([&] { return test::isGone(child.id()); }));
    EXPECT_TRUE(ChildEndNotice(child.id(), GetParam()).wait(20s));
    EXPECT_EQ(child.reap(), SIGTERM);
}

INSTANTIATE_TEST_SUITE_P(Methods, ChildEndNoticeTest,
                         testing::Values(ChildEndNotice::Method::best, ChildEndNotice::Method::thread),
                         [](const testing::TestParamInfo<ChildEndNotice::Method>& method) {
                             return method.param == ChildEndNotice::Method::best ? "Best" : "Thread";
                         });

class ChildEndingTest : public testing::Test {
protected:
    Pipe output = Pipe::open();
    Pipe errorOutput = Pipe::open();
    Pipe interruption = Pipe::open();

    OutputPump pump(const ChildEndNotice& childEnd) {
        return {std::move(output.reading), std::move(errorOutput.reading), childEnd.descriptor(),
                interruption.reading.get()};
    }
};

TEST_F(ChildEndingTest, AChildAloneIsAskedFirst) {
    ChildProcess child(forkMember(SIG_DFL));
    const ChildEndNotice childEnd(child.id());
    OutputPump pumping = pump(childEnd);
    const auto start = Clock::now();
    child_ending::endAlone(child, pumping);
    EXPECT_LT(Clock::now() - start, 450ms);
    EXPECT_EQ(child.reap(), SIGTERM);
}

TEST_F(ChildEndingTest, AChildAloneThatIsDeafIsKilled) {
    ChildProcess child(forkMember(SIG_IGN));
    const ChildEndNotice childEnd(child.id());
    OutputPump pumping = pump(childEnd);
    const auto start = Clock::now();
    child_ending::endAlone(child, pumping);
    EXPECT_GE(Clock::now() - start, 500ms);
    EXPECT_EQ(child.reap(), SIGKILL);
}

TEST_F(ChildEndingTest, AnInterruptionCutsEveryWaitShort) {
    ChildProcess child = spawnSleeper();
    const ChildEndNotice childEnd(child.id());
    OutputPump pumping = pump(childEnd);
    interruption.writing.reset();
    const auto start = Clock::now();
    EXPECT_FALSE(pumping.waitForChild(start + 20s));
    EXPECT_TRUE(pumping.wasInterrupted());
    pumping.pause(20s);
    child_ending::endAtOnce(child, childEnd);
    EXPECT_LT(Clock::now() - start, 10s);
    EXPECT_EQ(child.reap(), SIGKILL);
}

} // namespace
} // namespace zentrill
