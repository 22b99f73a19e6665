#include "platform/PropertyList.h"
#include "support/Processes.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace zentrill {
namespace {

using test::contentOf;
using testing::StartsWith;

void append(std::string& bytes, char32_t unit, int size, bool bigEndian) {
    for (int index = 0; index < size; ++index) {
        const int shift = 8 * (bigEndian ? size - 1 - index : index);
        bytes += static_cast<char>(unit >> shift & 0xFFU);
    }
}

struct MarkedForm {
    const char* name;
    std::string content;
};

/// `text` with a byte order mark in each of the five forms that a mark tells apart.
std::vector<MarkedForm> inEveryMarkedForm(std::u32string text) {
    text.insert(text.begin(), U'\uFEFF');
    std::vector<MarkedForm> forms{
        {"UTF-8", {}}, {"UTF-16BE", {}}, {"UTF-16LE", {}}, {"UTF-32BE", {}}, {"UTF-32LE", {}}};
    for (const char32_t character : text) {
        const bool isOutside = character > 0xFFFF;
        for (const bool bigEndian : {true, false}) {
            std::string& utf16 = forms[bigEndian ? 1 : 2].content;
            if (isOutside) {
                append(utf16, 0xD800 + ((character - 0x10000) >> 10U), 2, bigEndian);
                append(utf16, 0xDC00 + ((character - 0x10000) & 0x3FFU), 2, bigEndian);
            } else {
                append(utf16, character, 2, bigEndian);
            }
            append(forms[bigEndian ? 3 : 4].content, character, 4, bigEndian);
        }
        std::string& utf8 = forms[0].content;
        if (character < 0x80) {
            utf8 += static_cast<char>(character);
        } else {
            // The leading byte begins with a one for each byte of the sequence.
            const int more = isOutside ? 3 : character > 0x7FF ? 2 : 1;
            utf8 += static_cast<char>((0xFF00U >> (more + 1) & 0xFFU) | character >> (6 * more));
            for (int shift = 6 * (more - 1); shift >= 0; shift -= 6) {
                utf8 += static_cast<char>(0x80U | (character >> shift & 0x3FU));
            }
        }
    }
    return forms;
}

/// A whole list that is plain ASCII, but for what takes the place of "NAME".
std::u32string listWithName(const std::u32string& name) {
    const std::string list = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n"
                             "<dict><key>CFBundleName</key><string>NAME</string></dict>\n</plist>\n";
    std::u32string text(list.begin(), list.end());
    return text.replace(text.find(U"NAME"), 4, name);
}

class PropertyListFormsTest : public testing::Test {
protected:
    test::TemporaryDirectory folder;
};

TEST_F(PropertyListFormsTest, ReadsEveryFormThatAByteOrderMarkTells) {
    for (const auto& [form, content] :
         inEveryMarkedForm(listWithName(U"na\u00EFve \u20AC \U0001F9F9\U0010FFFF"))) {
        EXPECT_EQ(propertyListString(folder.makeFile("list.plist", content), "CFBundleName"),
                  "na\u00EFve \u20AC \U0001F9F9\U0010FFFF")
            << form;
    }
}

TEST_F(PropertyListFormsTest, KeepsAllOtherKeysOfAFileWithAByteOrderMark) {
    for (const auto& [form, content] : inEveryMarkedForm(listWithName(U"kept"))) {
        const std::string path = folder.makeFile("list.plist", content);
        ASSERT_TRUE(setPropertyListString(path, "Frame", "10 20")) << form;
        EXPECT_EQ(propertyListString(path, "CFBundleName"), "kept") << form;
        EXPECT_EQ(propertyListString(path, "Frame"), "10 20") << form;
        EXPECT_THAT(contentOf(path), StartsWith("<?xml")) << form;
    }
}

TEST_F(PropertyListFormsTest, AByteOrderMarkHidesNoTreeThatIsTooDeep) {
    std::u32string deep = listWithName(U"v");
    std::u32string arrays;
    for (int level = 0; level < 100'000; ++level) {
        arrays += U"<array>";
    }
    deep.insert(deep.find(U"</dict>"), arrays);
    for (const auto& [form, content] : inEveryMarkedForm(deep)) {
        const std::string path = folder.makeFile("deep.plist", content);
        EXPECT_EQ(propertyListString(path, "CFBundleName"), std::nullopt) << form;
        EXPECT_FALSE(setPropertyListString(path, "K", "w")) << form;
        EXPECT_EQ(contentOf(path), content) << form;
    }
}

TEST_F(PropertyListFormsTest, WhatIsNotOfTheFormThatItsMarkTellsHoldsNothing) {
    // Halves of a pair alone and in the wrong order, beyond the last character, a unit cut short.
    const std::vector<MarkedForm> whole = inEveryMarkedForm(listWithName(U"v"));
    std::vector<std::string> contents;
    for (std::size_t form = 1; form < whole.size(); ++form) {
        contents.push_back(whole[form].content + "\n");
    }
    const auto withUnits = [&](std::size_t form, const std::vector<char32_t>& units, int size,
                               bool bigEndian) {
        std::string content = whole[form].content;
        for (const char32_t unit : units) {
            append(content, unit, size, bigEndian);
        }
        contents.push_back(content);
    };
    for (const auto& units :
         std::vector<std::vector<char32_t>>{{0xD800}, {0xDC00}, {0xDC00, 0xD800}, {0xD800, 0x20}}) {
        withUnits(1, units, 2, true);
        withUnits(2, units, 2, false);
    }
    for (const char32_t unit : {0xD800U, 0x110000U, 0xFFFFFFFFU}) {
        withUnits(3, {unit}, 4, true);
        withUnits(4, {unit}, 4, false);
    }
    contents.insert(contents.end(), {"\xEF\xBB\xBF", "\xFE\xFF", "\xFF\xFE", std::string("\0\0\xFE\xFF", 4),
                                     std::string("\xFF\xFE\0\0", 4)});
    for (const std::string& content : contents) {
        EXPECT_EQ(propertyListString(folder.makeFile("list.plist", content), "CFBundleName"), std::nullopt)
            << testing::PrintToString(content);
    }
}

} // namespace
} // namespace zentrill
