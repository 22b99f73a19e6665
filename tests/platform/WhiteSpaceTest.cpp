#include "platform/WhiteSpace.h"

#include <gtest/gtest.h>

namespace zentrill {
namespace {

TEST(WhiteSpace, IsTrimmedAtBothEndsAlone) {
    EXPECT_EQ(trimmingWhiteSpace(" \t\r\n\v\f one  two \n"), "one  two");
    EXPECT_EQ(trimmingWhiteSpace("\xC2\x85\u00A0\u1680\u2000\u200A\u2028\u2029\u202F\u205F\u3000x\u2007"),
              "x");
    EXPECT_EQ(trimmingWhiteSpace("\u2009 \n\u3000"), "");
    EXPECT_EQ(trimmingWhiteSpace(""), "");
}

TEST(WhiteSpace, IsNothingThatHasAShapeOrNoWidth) {
    for (const std::string_view text :
         {"\u200B", "\uFEFF", "\u180E", "\u2060", "\u0105", "\u4E00", "\x1C", "\x85", "\xE2\x80"}) {
        EXPECT_EQ(trimmingWhiteSpace(text), text);
    }
}

} // namespace
} // namespace zentrill
