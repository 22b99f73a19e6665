#include "controller/DestructiveConfirmationCode.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <set>
#include <vector>

namespace zentrill {
namespace {

std::string codeOf(std::uint32_t value) {
    return DestructiveConfirmationCode::generate([value] { return value; });
}

/// A source of bits that gives `values` one after the other.
std::function<std::uint32_t()> sequence(std::vector<std::uint32_t> values) {
    return [values = std::move(values), next = std::size_t{0}]() mutable { return values.at(next++); };
}

TEST(DestructiveConfirmationCodeTest, WritesEightDigitsWithLeadingZeros) {
    EXPECT_EQ(codeOf(0), "00000000");
    EXPECT_EQ(codeOf(42), "00000042");
    EXPECT_EQ(codeOf(412'907), "00412907");
    EXPECT_EQ(codeOf(99'999'999), "99999999");
}

TEST(DestructiveConfirmationCodeTest, KeepsAnySourceInRange) {
    EXPECT_EQ(codeOf(100'000'000), "00000000");
    EXPECT_EQ(codeOf(4'294'967'295U), "94967295");
}

TEST(DestructiveConfirmationCodeTest, DrawsAgainWhatWouldFavourTheSmallCodes) {
    EXPECT_EQ(DestructiveConfirmationCode::uniformValue(sequence({4'199'999'999U})), 99'999'999U);
    EXPECT_EQ(DestructiveConfirmationCode::uniformValue(sequence({4'200'000'000U, 4'294'967'295U, 7})), 7U);
    EXPECT_EQ(DestructiveConfirmationCode::uniformValue(sequence({100'000'001})), 1U);
}

TEST(DestructiveConfirmationCodeTest, DrawsCodesFromTheSystemThatSpreadOverTheWholeRange) {
    constexpr int draws = 20'000;
    std::set<std::string> codes;
    std::array<int, 10> firstDigits{};
    for (int draw = 0; draw < draws; ++draw) {
        const std::string code = DestructiveConfirmationCode::generate();
        ASSERT_EQ(code.size(), 8U);
        ASSERT_TRUE(std::ranges::all_of(code, [](char digit) { return digit >= '0' && digit <= '9'; }))
            << code;
        codes.insert(code);
        ++firstDigits.at(static_cast<std::size_t>(code[0] - '0'));
    }
    // About two repetitions are to be expected; nine standard deviations lie between 2000 and the limits.
    EXPECT_GT(codes.size(), std::size_t{draws - 30});
    for (const int count : firstDigits) {
        EXPECT_GT(count, 1600);
        EXPECT_LT(count, 2400);
    }
}

TEST(DestructiveConfirmationCodeTest, FiltersTypedTextDownToEightAsciiDigits) {
    EXPECT_EQ(DestructiveConfirmationCode::filteredInput("12a3 4-5678 9"), "12345678");
    EXPECT_EQ(DestructiveConfirmationCode::filteredInput(""), "");
    EXPECT_EQ(DestructiveConfirmationCode::filteredInput("0041"), "0041");
    EXPECT_EQ(DestructiveConfirmationCode::filteredInput("only words"), "");
}

TEST(DestructiveConfirmationCodeTest, DropsDigitsOfOtherScripts) {
    EXPECT_EQ(DestructiveConfirmationCode::filteredInput("\uff11\uff121\u0663\u0967\u00b2"), "1");
    EXPECT_EQ(DestructiveConfirmationCode::filteredInput("1\xff\xb2"
                                                         "2"),
              "12");
}

TEST(DestructiveConfirmationCodeTest, MatchesOnlyTheIssuedCode) {
    EXPECT_TRUE(DestructiveConfirmationCode::matches("00412907", "00412907"));
    EXPECT_FALSE(DestructiveConfirmationCode::matches("00412908", "00412907"));
}

TEST(DestructiveConfirmationCodeTest, NeverMatchesWhatIsNotEightDigits) {
    EXPECT_FALSE(DestructiveConfirmationCode::matches("0041290", "0041290"));
    EXPECT_FALSE(DestructiveConfirmationCode::matches("004129071", "004129071"));
    EXPECT_FALSE(DestructiveConfirmationCode::matches("00412907 ", "00412907"));
    EXPECT_FALSE(DestructiveConfirmationCode::matches("0041 907", "0041 907"));
    EXPECT_FALSE(DestructiveConfirmationCode::matches("", ""));
    EXPECT_FALSE(DestructiveConfirmationCode::matches("\uff11\uff1112", "\uff11\uff1112"));
}

} // namespace
} // namespace zentrill
