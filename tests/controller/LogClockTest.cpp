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

TEST(LogClockTest, stampsWithTheLocalTimeOnATwentyFourHourClock) {
    LogClock clock;
    EXPECT_EQ(clock.stamped("Scan completed", localTime(14, 3, 27)), "[14:03:27] Scan completed");
    EXPECT_EQ(clock.stamped("", localTime(0, 0, 0)), "[00:00:00] ");
}

TEST(LogClockTest, followsTheTimeFromSecondToSecondAndBack) {
    LogClock clock;
    EXPECT_EQ(clock.stamped("a", localTime(9, 59, 59)), "[09:59:59] a");
    EXPECT_EQ(clock.stamped("b", localTime(9, 59, 59)), "[09:59:59] b");
    EXPECT_EQ(clock.stamped("c", localTime(10, 0, 0)), "[10:00:00] c");
    EXPECT_EQ(clock.stamped("d", localTime(9, 59, 59)), "[09:59:59] d");
}

TEST(LogClockTest, stampsTheMomentBeforeTheEpochToo) {
    LogClock clock;
    EXPECT_EQ(clock.stamped("a", -1).size(), std::string("[00:00:00] a").size());
}

TEST(LogClockTest, keepsBytesAndLineFeedsOfTheMessage) {
    LogClock clock;
    EXPECT_EQ(clock.stamped("\xff\n\x01", localTime(1, 2, 3)), "[01:02:03] \xff\n\x01");
}

} // namespace
} // namespace zentrill
