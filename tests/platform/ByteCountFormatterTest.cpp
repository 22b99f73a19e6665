#include "platform/ByteCountFormatter.h"

#include <gtest/gtest.h>

#include <limits>

namespace zentrill {
namespace {

TEST(ByteCountFormatter, NeverUsesAUnitBelowMegabytes) {
    EXPECT_EQ(formattedByteCount(0), "0 MB");
    EXPECT_EQ(formattedByteCount(1), "0 MB");
    EXPECT_EQ(formattedByteCount(50'000), "0.1 MB");
    EXPECT_EQ(formattedByteCount(999'999), "1 MB");
}

TEST(ByteCountFormatter, ShowsOneDecimalOfMegabytesAndTwoOfGigabytes) {
    EXPECT_EQ(formattedByteCount(1'500'000), "1.5 MB");
    EXPECT_EQ(formattedByteCount(850'000'000), "850 MB");
    EXPECT_EQ(formattedByteCount(4'661'224'676), "4.66 GB");
    EXPECT_EQ(formattedByteCount(4'600'000'000), "4.6 GB");
    EXPECT_EQ(formattedByteCount(70'050'000'000), "70.05 GB");
}

TEST(ByteCountFormatter, ChangesTheUnitWhereMegabytesWouldRoundToAThousand) {
    EXPECT_EQ(formattedByteCount(999'949'999), "999.9 MB");
    EXPECT_EQ(formattedByteCount(999'950'000), "1 GB");
    EXPECT_EQ(formattedByteCount(1'000'000'000), "1 GB");
}

TEST(ByteCountFormatter, HoldsTheLargestCount) {
    EXPECT_EQ(formattedByteCount(std::numeric_limits<std::int64_t>::max()), "9223372036.85 GB");
}

} // namespace
} // namespace zentrill
