#include "controller/LogClock.h"

#include <gtest/gtest.h>

#include <ctime>

namespace zentrill {
namespace {

std::time_t localTime(int hour, int minute, int second) {
    std::tm moment{};
    moment.tm_year = 125;
    moment.tm_mon = 5;
    moment.tm_mday = 1;
    moment.tm_hour = hour;
    moment.tm_min = minute;
    moment.tm_sec = second;
    moment.tm_isdst = -1;
    return std::mktime(&moment);
}

std::string stamped(LogClock& clock, const std::string& message, std::time_t now) {
    std::string entry = LogClock::roomFor(message);
    clock.stamp(entry, now);
    return entry;
}

TEST(LogClockTest, StampsWithTheLocalTimeOnATwentyFourHourClock) {
    LogClock clock;
    EXPECT_EQ(stamped(clock, "Scan completed", localTime(14, 3, 27)), "[14:03:27] Scan completed");
    EXPECT_EQ(stamped(clock, "", localTime(0, 0, 0)), "[00:00:00] ");
}

TEST(LogClockTest, FollowsTheTimeFromSecondToSecondAndBack) {
    LogClock clock;
    EXPECT_EQ(stamped(clock, "a", localTime(9, 59, 59)), "[09:59:59] a");
    EXPECT_EQ(stamped(clock, "b", localTime(9, 59, 59)), "[09:59:59] b");
    EXPECT_EQ(stamped(clock, "c", localTime(10, 0, 0)), "[10:00:00] c");
    EXPECT_EQ(stamped(clock, "d", localTime(9, 59, 59)), "[09:59:59] d");
}

TEST(LogClockTest, StampsTheMomentBeforeTheEpochToo) {
    LogClock clock;
    EXPECT_EQ(stamped(clock, "a", -1).size(), std::string("[00:00:00] a").size());
}

TEST(LogClockTest, KeepsBytesAndLineFeedsOfTheMessage) {
    LogClock clock;
    EXPECT_EQ(stamped(clock, "\xff\n\x01", localTime(1, 2, 3)), "[01:02:03] \xff\n\x01");
}

TEST(LogClockTest, StampsWithoutMovingTheLine) {
    LogClock clock;
    std::string entry = LogClock::roomFor("a message too long for a string to keep within itself");
    const char* const before = entry.data();
    clock.stamp(entry);
    EXPECT_EQ(entry.data(), before);
    EXPECT_TRUE(entry.ends_with("] a message too long for a string to keep within itself"));
}

} // namespace
} // namespace zentrill
