#include "platform/ByteSum.h"

#include <gtest/gtest.h>

namespace zentrill {
namespace {

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();

TEST(ByteSum, Adds) {
    std::int64_t sum = 5;
    addBytes(sum, 7);
    addBytes(sum, 0);
    EXPECT_EQ(sum, 12);
}

TEST(ByteSum, StaysAtTheLargestValueOnceItGotThere) {
    std::int64_t sum = largest - 1;
    addBytes(sum, 1);
    EXPECT_EQ(sum, largest);
    addBytes(sum, 1);
    EXPECT_EQ(sum, largest);
    addBytes(sum, largest);
    EXPECT_EQ(sum, largest);
}

} // namespace
} // namespace zentrill
