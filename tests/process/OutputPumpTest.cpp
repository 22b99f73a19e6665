#include "process/OutputPump.h"

#include "platform/Pipe.h"
#include "process/ChildEndNotice.h"
#include "process/SpawnChild.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <string_view>
#include <utility>

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace zentrill {
namespace {

using namespace std::chrono_literals;
using Clock = OutputPump::Clock;

class OutputPumpTest : public testing::Test {
protected:
    Pipe output = Pipe::open();
    Pipe errorOutput = Pipe::open();
    Pipe childEnd = Pipe::open();
    Pipe interruption = Pipe::open();

    OutputPump pump() {
        return {std::move(output.reading), std::move(errorOutput.reading), childEnd.reading.get(),
                interruption.reading.get()};
    }

    static void write(const FileDescriptor& descriptor, std::string_view text) {
        ASSERT_EQ(::write(descriptor.get(), text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }
};

TEST_F(OutputPumpTest, SettlesAsSoonAsBothStreamsHaveEnded) {
    OutputPump pumping = pump();
    write(output.writing, "out");
    write(errorOutput.writing, "err");
    output.writing.reset();
    errorOutput.writing.reset();
    EXPECT_TRUE(pumping.settle(Clock::now() + 20s));
    EXPECT_EQ(pumping.takeOutput().text, "out");
    EXPECT_EQ(pumping.takeErrorOutput().text, "err");
}

TEST_F(OutputPumpTest, IsSettledWhenBothStreamsEndedBefore) {
    OutputPump pumping = pump();
    output.writing.reset();
    errorOutput.writing.reset();
    ASSERT_TRUE(pumping.settle(Clock::now() + 20s));
    EXPECT_TRUE(pumping.settle(Clock::now() - 1s));
}

TEST_F(OutputPumpTest, OneStreamThatStaysOpenIsReadUntilTheDeadline) {
    for (const bool isOutput : {true, false}) {
        SCOPED_TRACE(isOutput);
        output = Pipe::open();
        errorOutput = Pipe::open();
        OutputPump pumping = pump();
        (isOutput ? errorOutput : output).writing.reset();
        write((isOutput ? output : errorOutput).writing, "late");
        const auto deadline = Clock::now() + 50ms;
        EXPECT_FALSE(pumping.settle(deadline));
        EXPECT_GE(Clock::now(), deadline);
        EXPECT_EQ((isOutput ? pumping.takeOutput() : pumping.takeErrorOutput()).text, "late");
    }
}

TEST_F(OutputPumpTest, TheEndOfTheChildDoesNotSettleAStream) {
    OutputPump pumping = pump();
    childEnd.writing.reset();
    ASSERT_TRUE(pumping.waitForChild(Clock::now() + 20s));
    EXPECT_FALSE(pumping.settle(Clock::now() + 20ms));
}

TEST_F(OutputPumpTest, AnInterruptionEndsTheSettling) {
    OutputPump pumping = pump();
    interruption.writing.reset();
    EXPECT_FALSE(pumping.settle(Clock::time_point::max()));
    EXPECT_TRUE(pumping.wasInterrupted());
}

TEST_F(OutputPumpTest, APauseLastsThoughNothingIsToBeRead) {
    OutputPump pumping = pump();
    output.writing.reset();
    errorOutput.writing.reset();
    const auto start = Clock::now();
    pumping.pause(50ms);
    EXPECT_GE(Clock::now() - start, 50ms);
}

TEST_F(OutputPumpTest, DrainsAndClosesBothStreams) {
    OutputPump pumping = pump();
    write(output.writing, "out");
    write(errorOutput.writing, "err");
    pumping.drain();
    EXPECT_EQ(pumping.takeOutput().text, "out");
    EXPECT_EQ(pumping.takeErrorOutput().text, "err");
    for (const FileDescriptor* writing : {&output.writing, &errorOutput.writing}) {
        pollfd entry{.fd = writing->get(), .events = POLLOUT, .revents = 0};
        ASSERT_EQ(::poll(&entry, 1, 0), 1);
        EXPECT_TRUE((entry.revents & POLLERR) != 0) << "the pipe is still open";
    }
}

#ifdef __linux__
// A socket for messages tells the length of the first alone, like a pipe into which somebody goes on writing.
TEST_F(OutputPumpTest, DrainsNoMoreThanThereWasAtTheStart) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, ends.data()), 0);
    const FileDescriptor writing(ends[1]);
    write(writing, "one");
    write(writing, "more");
    OutputPump pumping(FileDescriptor{ends[0]}, std::move(errorOutput.reading), childEnd.reading.get(),
                       interruption.reading.get());
    pumping.drain();
    EXPECT_EQ(pumping.takeOutput().text, "one");
}
#endif

TEST_F(OutputPumpTest, ARealCommandLeavesNothingOnItsWay) {
    SpawnedChild spawned = spawnChild("/bin/sh", {"-c", "echo out; echo err >&2"}, {}, output.writing.get(),
                                      errorOutput.writing.get());
    ASSERT_TRUE(spawned.child) << spawned.error.message();
    output.writing.reset();
    errorOutput.writing.reset();
    const ChildEndNotice end(spawned.child->id());
    OutputPump pumping(std::move(output.reading), std::move(errorOutput.reading), end.descriptor(),
                       interruption.reading.get());
    EXPECT_TRUE(pumping.waitForChild(Clock::now() + 20s));
    EXPECT_TRUE(pumping.settle(Clock::now() + 20s));
    EXPECT_EQ(pumping.takeOutput().text, "out\n");
    EXPECT_EQ(pumping.takeErrorOutput().text, "err\n");
    EXPECT_EQ(spawned.child->reap(), 0);
}

} // namespace
} // namespace zentrill
