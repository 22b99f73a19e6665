#include "process/DataBox.h"

#include <gtest/gtest.h>

#include <string>

namespace zentrill {
namespace {

TEST(DataBox, IsEmptyAtFirstAndAfterTaking) {
    DataBox box;
    EXPECT_EQ(box.takeText(), "");
    box.append("one ");
    box.append("two");
    EXPECT_EQ(box.takeText(), "one two");
    EXPECT_EQ(box.takeText(), "");
}

TEST(DataBox, ACharacterMayArriveInPieces) {
    DataBox box;
    box.append("\xe2");
    box.append("\x82\xac");
    EXPECT_EQ(box.takeText(), "€");
}

TEST(DataBox, BytesThatAreNoTextMakeItEmpty) {
    DataBox box;
    box.append("text \x80");
    EXPECT_EQ(box.takeText(), "");
    box.append("unfinished \xe2\x82");
    EXPECT_EQ(box.takeText(), "");
}

TEST(DataBox, TheLimitKeepsTheBeginning) {
    DataBox box(4);
    box.append("abcd");
    EXPECT_EQ(box.takeText(), "abcd");
    box.append("abc");
    box.append("def");
    box.append("ghi");
    EXPECT_EQ(box.takeText(), "abcd");
}

TEST(DataBox, TheLimitsOwnCutDoesNotSpoilTheText) {
    DataBox box(4);
    box.append("ab€");
    EXPECT_EQ(box.takeText(), "ab");
    box.append("ab\xe2\x82");
    EXPECT_EQ(box.takeText(), "") << "cut by the command, not by the limit";
    box.append("\xff"
               "b€");
    EXPECT_EQ(box.takeText(), "");
}

} // namespace
} // namespace zentrill
