#include "process/DataBox.h"

#include <gtest/gtest.h>

#include <string>

namespace zentrill {
namespace {

TEST(DataBox, IsEmptyAtFirstAndAfterTaking) {
    DataBox box;
    EXPECT_EQ(box.take().text, "");
    box.append("one ");
    box.append("two");
    EXPECT_EQ(box.take().text, "one two");
    EXPECT_EQ(box.take().text, "");
}

TEST(DataBox, ACharacterMayArriveInPieces) {
    DataBox box;
    box.append("\xe2");
    box.append("\x82\xac");
    EXPECT_EQ(box.take().text, "€");
}

TEST(DataBox, SaysWhetherTheTextIsAllThatWasDelivered) {
    DataBox box(4);
    EXPECT_TRUE(box.take().isWhole);
    box.append("abcd");
    EXPECT_TRUE(box.take().isWhole);
    box.append("abcd");
    box.append("\n");
    EXPECT_FALSE(box.take().isWhole) << "cut at the limit";
    box.append("ab\xff");
    EXPECT_FALSE(box.take().isWhole) << "no text";
    box.append("\xe2\x82");
    EXPECT_FALSE(box.take().isWhole) << "half a character";
    box.append("abcd");
    EXPECT_TRUE(box.take().isWhole) << "what was taken before does not count";
}

TEST(DataBox, BytesThatAreNoTextMakeItEmpty) {
    DataBox box;
    box.append("text \x80");
    EXPECT_EQ(box.take().text, "");
    box.append("unfinished \xe2\x82");
    EXPECT_EQ(box.take().text, "");
}

TEST(DataBox, TheLimitKeepsTheBeginning) {
    DataBox box(4);
    box.append("abcd");
    EXPECT_EQ(box.take().text, "abcd");
    box.append("abc");
    box.append("def");
    box.append("ghi");
    EXPECT_EQ(box.take().text, "abcd");
}

TEST(DataBox, TheLimitsOwnCutDoesNotSpoilTheText) {
    DataBox box(4);
    box.append("ab€");
    EXPECT_EQ(box.take().text, "ab");
    box.append("ab\xe2\x82");
    EXPECT_EQ(box.take().text, "") << "cut by the command, not by the limit";
    box.append("\xff"
               "b€");
    EXPECT_EQ(box.take().text, "");
}

} // namespace
} // namespace zentrill
