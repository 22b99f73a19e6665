#include "platform/UnicodeText.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace zentrill {
namespace {

using namespace std::string_literals;

TEST(UnicodeText, WithoutAMarkStaysAsItIs) {
    for (const std::string& content : {""s, "text"s, "\xFF"s, "\xEF\xBB"s, "\0\0\xFE"s, "\0t\0e"s}) {
        EXPECT_EQ(withoutByteOrderMark(content), content);
    }
}

TEST(UnicodeText, LosesItsMark) {
    EXPECT_EQ(withoutByteOrderMark("\xEF\xBB\xBFtext"), "text");
    EXPECT_EQ(withoutByteOrderMark("\xEF\xBB\xBF"), "");
    EXPECT_EQ(withoutByteOrderMark("\xFE\xFF"), "");
    EXPECT_EQ(withoutByteOrderMark("\xFF\xFE\0\0"s), "");
    EXPECT_EQ(withoutByteOrderMark("\xEF\xBB\xBF\xEF\xBB\xBFx"), "\xEF\xBB\xBFx") << "the first one alone";
}

TEST(UnicodeText, IsConvertedFromTheFormThatItsMarkTells) {
    EXPECT_EQ(withoutByteOrderMark("\xFE\xFF\0A\0\xE9\x20\xAC\xD8\x3E\xDD\xF9"s), "A\u00E9\u20AC\U0001F9F9");
    EXPECT_EQ(withoutByteOrderMark("\xFF\xFE"
                                   "A\0\xE9\0\xAC\x20\x3E\xD8\xF9\xDD"s),
              "A\u00E9\u20AC\U0001F9F9");
    EXPECT_EQ(withoutByteOrderMark("\0\0\xFE\xFF\0\0\0A\0\x01\xF9\xF9\0\x10\xFF\xFF"s),
              "A\U0001F9F9\U0010FFFF");
    EXPECT_EQ(withoutByteOrderMark("\xFF\xFE\0\0"
                                   "A\0\0\0\xF9\xF9\x01\0"s),
              "A\U0001F9F9");
}

TEST(UnicodeText, TakesAsManyBytesAsEachCharacterNeeds) {
    // The last character of each length, and the first of the next.
    EXPECT_EQ(withoutByteOrderMark("\xFE\xFF\0\x7F\0\x80\x07\xFF\x08\0\xFF\xFF\xD8\0\xDC\0"s),
              "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80");
}

TEST(UnicodeText, ThatContradictsItsMarkIsNone) {
    for (const std::string& content :
         {"\xFE\xFF\0"s, "\xFE\xFF\xD8\0"s, "\xFE\xFF\xDC\0"s, "\xFE\xFF\xD8\0\0A"s, "\xFE\xFF\xDC\0\xD8\0"s,
          "\xFF\xFE\0\xD8\0\xD8"s, "\0\0\xFE\xFF\0\0\0"s, "\0\0\xFE\xFF\0\0\xD8\0"s,
          "\0\0\xFE\xFF\0\x11\0\0"s, "\xFF\xFE\0\0\xFF\xFF\xFF\xFF"s}) {
        EXPECT_EQ(withoutByteOrderMark(content), std::nullopt) << testing::PrintToString(content);
    }
}

} // namespace
} // namespace zentrill
