#include "controller/DisplayText.h"

#include <QString>
#include <gtest/gtest.h>

#include <string_view>

namespace zentrill {
namespace {

using namespace std::string_view_literals;

TEST(DisplayTextTest, LeavesPlainTextAsItIs) {
    EXPECT_EQ(displayName(""), QString());
    EXPECT_EQ(displayName("llama3:latest (4 GB)"), QStringLiteral("llama3:latest (4 GB)"));
    EXPECT_EQ(displayName("Größe · 模型"), QString::fromUtf8("Größe · 模型"));
}

TEST(DisplayTextTest, KeepsCharactersOfFourBytes) {
    EXPECT_EQ(displayName("a\xF0\x9F\xA6\x99z"), QString::fromUtf8("a\xF0\x9F\xA6\x99z"));
}

TEST(DisplayTextTest, WritesBytesThatAreNoTextInHexadecimal) {
    EXPECT_EQ(displayName("a\xFFz"), QStringLiteral("a\\xFFz"));
    EXPECT_EQ(displayName("\xC3"), QStringLiteral("\\xC3"));
    EXPECT_EQ(displayName("\xE2\x82"
                          "A"),
              QStringLiteral("\\xE2\\x82"
                             "A"));
    EXPECT_EQ(displayName("\xC0\xAF"), QStringLiteral("\\xC0\\xAF"));
    EXPECT_EQ(displayName("\xE0\x80\xAF"), QStringLiteral("\\xE0\\x80\\xAF"));
    EXPECT_EQ(displayName("\xED\xA0\x80"), QStringLiteral("\\xED\\xA0\\x80"));
    EXPECT_EQ(displayName("\xF4\x90\x80\x80"), QStringLiteral("\\xF4\\x90\\x80\\x80"));
    EXPECT_EQ(displayName("\xF0\x9F\xA6"), QStringLiteral("\\xF0\\x9F\\xA6"));
}

TEST(DisplayTextTest, WritesControlsInNamesVisibly) {
    EXPECT_EQ(displayName("a\nb\tc\rd"), QStringLiteral("a\\nb\\tc\\x0Dd"));
    EXPECT_EQ(displayName("\x1B[31m\x7F"), QStringLiteral("\\x1B[31m\\x7F"));
    EXPECT_EQ(displayName("a\0b"sv), QStringLiteral("a\\x00") + QLatin1Char('b'));
    EXPECT_EQ(displayName("\xC2\x85"), QStringLiteral("\\x85"));
}

TEST(DisplayTextTest, KeepsTheLinesAndTabsOfMessages) {
    EXPECT_EQ(displayMessage("a\nb\tc\rd"), QStringLiteral("a\nb\tc\\x0Dd"));
    EXPECT_EQ(displayMessage("a\n\xFF"), QStringLiteral("a\n\\xFF"));
}

TEST(DisplayTextTest, WritesWhatReordersOrHidesTextVisibly) {
    EXPECT_EQ(displayName("gpj\xE2\x80\xAE.exe"), QStringLiteral("gpj\\u202E.exe"));
    EXPECT_EQ(displayName("\xE2\x81\xA6x\xE2\x81\xA9"), QStringLiteral("\\u2066x\\u2069"));
    EXPECT_EQ(displayName("a\xE2\x80\x8B"
                          "b"),
              QStringLiteral("a\\u200B") + QLatin1Char('b'));
    EXPECT_EQ(displayName("\xD8\x9C"), QStringLiteral("\\u061C"));
    EXPECT_EQ(displayMessage("a\xE2\x80\xA8"
                             "b"),
              QStringLiteral("a\\u2028") + QLatin1Char('b'));
}

TEST(DisplayTextTest, WritesWhatIsNotSeenVisibly) {
    EXPECT_EQ(displayName("pass\xC2\xADword"), QStringLiteral("pass\\xADword"));
    EXPECT_EQ(displayName("a\xF3\xA0\x81\x81z"), QStringLiteral("a\\uE0041z"));
    EXPECT_EQ(displayName("\xE1\xA0\x8E"), QStringLiteral("\\u180E"));
    // A letter with its accent apart stays one.
    EXPECT_EQ(displayName("e\xCC\x81"), QString::fromUtf8("e\xCC\x81"));
}

TEST(DisplayTextTest, WritesAByteOrderMarkVisibly) {
    EXPECT_EQ(displayName("\xEF\xBB\xBFname"), QStringLiteral("\\uFEFFname"));
    EXPECT_EQ(displayName("na\xEF\xBB\xBFme"), QStringLiteral("na\\uFEFFme"));
}

} // namespace
} // namespace zentrill
