#include "platform/Text.h"

#include <gtest/gtest.h>

#include <string_view>

namespace zentrill {
namespace {

using namespace std::string_view_literals;

TEST(TextTest, FindsAZeroByteAnywhere) {
    EXPECT_FALSE(hasNul(""));
    EXPECT_FALSE(hasNul("/home/sam/0"));
    EXPECT_TRUE(hasNul("\0"sv));
    EXPECT_TRUE(hasNul("/home\0"sv));
    EXPECT_TRUE(hasNul("\0/home"sv));
}

TEST(TextTest, SeparatesWhatItJoins) {
    EXPECT_EQ(joined({}, ", "), "");
    EXPECT_EQ(joined({"one"}, ", "), "one");
    EXPECT_EQ(joined({"one", "two", "three"}, ", "), "one, two, three");
}

} // namespace
} // namespace zentrill
