#include "platform/WakePipe.h"

#include <gtest/gtest.h>

#include <thread>

#include <poll.h>

namespace zentrill {
namespace {

bool isReadable(const WakePipe& pipe, int milliseconds = 0) {
    pollfd watched{.fd = pipe.descriptor(), .events = POLLIN, .revents = 0};
    return ::poll(&watched, 1, milliseconds) == 1;
}

TEST(WakePipeTest, WakesWhoWaitsOnAnotherThread) {
    const WakePipe pipe;
    EXPECT_FALSE(isReadable(pipe));
    std::thread other([&] { pipe.wake(); });
    EXPECT_TRUE(isReadable(pipe, 60'000));
    other.join();
}

TEST(WakePipeTest, SleepsAgainAfterAResetAndWakesOnceMore) {
    const WakePipe pipe;
    pipe.wake();
    pipe.reset();
    EXPECT_FALSE(isReadable(pipe));
    pipe.wake();
    EXPECT_TRUE(isReadable(pipe));
}

TEST(WakePipeTest, AResetWithoutAWakeDoesNotWait) {
    const WakePipe pipe;
    pipe.reset();
    EXPECT_FALSE(isReadable(pipe));
}

} // namespace
} // namespace zentrill
