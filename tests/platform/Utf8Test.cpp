#include "platform/Utf8.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace zentrill {
namespace {

using namespace std::string_view_literals;

std::string encoded(char32_t value, int length) {
    std::string bytes;
    for (int shift = (length - 1) * 6; shift >= 0; shift -= 6) {
        const auto part = static_cast<unsigned>((value >> shift) & 0x3F);
        constexpr unsigned leads[] = {0, 0, 0xC0, 0xE0, 0xF0}; // NOLINT(modernize-avoid-c-arrays): by length
        const bool isLead = bytes.empty();
        bytes.push_back(static_cast<char>((isLead ? leads[length] : 0x80U) | part));
    }
    return bytes;
}

int lengthOf(char32_t value) {
    return value < 0x800 ? 2 : value < 0x10000 ? 3 : 4;
}

TEST(Utf8, EveryCharacterIsValidInItsShortestFormAlone) {
    for (char32_t value = 0x80; value <= 0x10FFFF; ++value) {
        const bool surrogate = value >= 0xD800 && value <= 0xDFFF;
        const int length = lengthOf(value);
        ASSERT_EQ(isValidUtf8(encoded(value, length)), !surrogate)
            << std::hex << static_cast<unsigned>(value);
        for (int longer = length + 1; longer <= 4; ++longer) {
            ASSERT_FALSE(isValidUtf8(encoded(value, longer))) << std::hex << static_cast<unsigned>(value);
        }
    }
}

TEST(Utf8, NothingLiesAboveTheLastCharacter) {
    EXPECT_TRUE(isValidUtf8("\xf4\x8f\xbf\xbf"));
    EXPECT_FALSE(isValidUtf8("\xf4\x90\x80\x80"));
    EXPECT_FALSE(isValidUtf8("\xf5\x80\x80\x80"));
    EXPECT_FALSE(isValidUtf8("\xf8\x88\x80\x80\x80"));
}

TEST(Utf8, OverlongAsciiIsInvalid) {
    EXPECT_FALSE(isValidUtf8("\xc0\x80"));
    EXPECT_FALSE(isValidUtf8("\xc1\xbf"));
    EXPECT_FALSE(isValidUtf8("\xe0\x80\xaf"));
    EXPECT_FALSE(isValidUtf8("\xf0\x80\x80\xaf"));
}

TEST(Utf8, AsciiWithControlCharactersIsValid) {
    EXPECT_TRUE(isValidUtf8(""));
    EXPECT_TRUE(isValidUtf8("\0\x01 plain text, longer than a word\x7f"sv));
}

TEST(Utf8, AMistakeIsFoundAtEveryPlace) {
    for (std::size_t place = 0; place < 40; ++place) {
        std::string text(40, 'a');
        text[place] = '\x80';
        EXPECT_FALSE(isValidUtf8(text)) << place;
        text.replace(place, 1, "é");
        EXPECT_TRUE(isValidUtf8(text)) << place;
    }
}

TEST(Utf8, ACutCharacterIsInvalidAndItsTailIsKnown) {
    for (const std::string_view character : {"é"sv, "€"sv, "😀"sv}) {
        for (std::size_t kept = 1; kept < character.size(); ++kept) {
            const std::string cut = "text" + std::string(character.substr(0, kept));
            EXPECT_FALSE(isValidUtf8(cut));
            EXPECT_EQ(incompleteUtf8TailLength(cut), kept);
        }
    }
    EXPECT_EQ(incompleteUtf8TailLength("text€"), 0U);
    EXPECT_EQ(incompleteUtf8TailLength("text"), 0U);
    EXPECT_EQ(incompleteUtf8TailLength(""), 0U);
}

TEST(Utf8, ATailThatCanNeverBecomeACharacterIsNone) {
    EXPECT_EQ(incompleteUtf8TailLength("a\x80"), 0U);
    EXPECT_EQ(incompleteUtf8TailLength("a\xff"), 0U);
    EXPECT_EQ(incompleteUtf8TailLength("a\xed\xa0"), 0U) << "the beginning of a surrogate";
    EXPECT_EQ(incompleteUtf8TailLength("\x80\x80\x80\x80"), 0U);
}

} // namespace
} // namespace zentrill
