#include "platform/PropertyListLimits.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace zentrill {
namespace {

using namespace std::string_literals;

/// A number of eight bytes, the most significant first.
std::string number(std::size_t value) {
    std::string bytes(8, '\0');
    for (std::size_t place = bytes.size(); place-- > 0; value >>= 8U) {
        bytes[place] = static_cast<char>(value & 0xFFU);
    }
    return bytes;
}

/// A binary list with one object, whose place is told by `table` in as many bytes as `offsetSize`.
std::string binaryList(const std::string& objects, char offsetSize, std::size_t table) {
    return "bplist00" + objects + std::string(6, '\0') + offsetSize + '\1' + number(1) + number(0) +
           number(table);
}

TEST(PropertyListLimits, AnEmptyDictionaryIsWithinThem) {
    EXPECT_TRUE(isWithinPropertyListLimits(binaryList("\xD0\x08"s, 1, 9)));
    EXPECT_TRUE(isWithinPropertyListLimits("<plist><dict></dict></plist>"));
}

TEST(PropertyListLimits, ATableBeyondTheEndIsNone) {
    EXPECT_FALSE(isWithinPropertyListLimits(binaryList("\xD0\x08"s, 1, 1000)));
    EXPECT_FALSE(isWithinPropertyListLimits(binaryList("\xD0\x08"s, 0, 9)));
    EXPECT_FALSE(isWithinPropertyListLimits(binaryList("\xD0\x08"s, 9, 9)));
}

TEST(PropertyListLimits, ALongCountIsAnInteger) {
    EXPECT_TRUE(isWithinPropertyListLimits(binaryList("\xDF\x10\0\x08"s, 1, 11)));
    EXPECT_FALSE(isWithinPropertyListLimits(binaryList("\xDF\x20\0\x08"s, 1, 11)));
}

/// The table's only entry begins with the last byte of the list and would end with the byte behind it, which
/// would make it point to the dictionary.
TEST(PropertyListLimits, NothingIsReadBehindTheEnd) {
    const std::string list = binaryList("\xD0"s + std::string(216, '\0'), 2, 256);
    ASSERT_EQ(list.size(), 257U);
    const std::string withMore = list + "\x08";
    EXPECT_FALSE(isWithinPropertyListLimits(std::string_view(withMore).substr(0, list.size())));
}

TEST(PropertyListLimits, SoManyContainersAndTagsAreTooMany) {
    std::string containers;
    for (int i = 0; i < 1024; ++i) {
        containers += i % 2 == 0 ? "<array>" : "<dict>";
    }
    EXPECT_TRUE(isWithinPropertyListLimits(containers));
    EXPECT_FALSE(isWithinPropertyListLimits(containers + "<dict>"));
    EXPECT_TRUE(isWithinPropertyListLimits(std::string(400'000, '<')));
    EXPECT_FALSE(isWithinPropertyListLimits(std::string(400'001, '<')));
}

} // namespace
} // namespace zentrill
