#include "models/DecimalInteger.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

namespace zentrill {
namespace {

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();

TEST(DecimalIntegerTest, DigitsMayHaveOneSign) {
    EXPECT_EQ(integerFromDigits("123"), 123);
    EXPECT_EQ(integerFromDigits("+123"), 123);
    EXPECT_EQ(integerFromDigits("-123"), -123);
    EXPECT_EQ(integerFromDigits("000123"), 123);
    EXPECT_EQ(integerFromDigits("-0"), 0);
    EXPECT_EQ(integerFromDigits("9223372036854775807"), largest);
    EXPECT_EQ(integerFromDigits("-9223372036854775808"), smallest);
}

TEST(DecimalIntegerTest, AnythingButDigitsIsNoInteger) {
    for (const char* text : {"", "+", "-", "+-1", "-+1", "++1", "--1", " 123", "123 ", "12a", "a12", "1.0",
                             "1e3", "0x10", "1_000", "\t1", "١"}) {
        EXPECT_EQ(integerFromDigits(text), std::nullopt) << '"' << text << '"';
    }
    EXPECT_EQ(integerFromDigits(std::string("12\0", 3)), std::nullopt);
    EXPECT_EQ(integerFromDigits("9223372036854775808"), std::nullopt);
    EXPECT_EQ(integerFromDigits("-9223372036854775809"), std::nullopt);
    EXPECT_EQ(integerFromDigits("18446744073709551617"), std::nullopt);
}

TEST(DecimalIntegerTest, ANumberIsTheIntegerItEquals) {
    EXPECT_EQ(integerFromNumber("12"), 12);
    EXPECT_EQ(integerFromNumber("12.0"), 12);
    EXPECT_EQ(integerFromNumber("-12.000"), -12);
    EXPECT_EQ(integerFromNumber("1e3"), 1000);
    EXPECT_EQ(integerFromNumber("1E+3"), 1000);
    EXPECT_EQ(integerFromNumber("1.5e1"), 15);
    EXPECT_EQ(integerFromNumber("0.05e2"), 5);
    EXPECT_EQ(integerFromNumber("1200e-2"), 12);
    EXPECT_EQ(integerFromNumber("100.00e-2"), 1);
    EXPECT_EQ(integerFromNumber("0"), 0);
    EXPECT_EQ(integerFromNumber("-0.0"), 0);
    EXPECT_EQ(integerFromNumber("0e99999999999999999999"), 0);
}

TEST(DecimalIntegerTest, AFractionIsNoInteger) {
    for (const char* number :
         {"12.5", "0.1", "-0.1", "1e-1", "15e-1", "1.00000000000000000000000001", "9223372036854775806.5",
          "1e-99999999999999999999", "1e-9223372036854775808"}) {
        EXPECT_EQ(integerFromNumber(number), std::nullopt) << number;
    }
}

TEST(DecimalIntegerTest, NumbersAreExactInAllOf64Bits) {
    // All three are the same double.
    EXPECT_EQ(integerFromNumber("9223372036854775807.0"), largest);
    EXPECT_EQ(integerFromNumber("9.223372036854775806e18"), largest - 1);
    EXPECT_EQ(integerFromNumber("9223372036854775808.0"), std::nullopt);
    EXPECT_EQ(integerFromNumber("-9.223372036854775808e18"), smallest);
    EXPECT_EQ(integerFromNumber("9007199254740993.0"), 9007199254740993);
    EXPECT_EQ(integerFromNumber("1e18"), 1'000'000'000'000'000'000);
    EXPECT_EQ(integerFromNumber("1e19"), std::nullopt);
    EXPECT_EQ(integerFromNumber("1e9223372036854775807"), std::nullopt);
    EXPECT_EQ(integerFromNumber("1e99999999999999999999"), std::nullopt);
    EXPECT_EQ(integerFromNumber(std::string(5000, '0').insert(0, "1") + "e-5000"), 1);
}

TEST(DecimalIntegerTest, AnyDecimalPointWillDo) {
    EXPECT_EQ(integerFromNumber("12,0"), 12);
    EXPECT_EQ(integerFromNumber("12,5"), std::nullopt);
}

} // namespace
} // namespace zentrill
