#include "catalog/AppCategory.h"

#include <gtest/gtest.h>

namespace zentrill {
namespace {

TEST(AppCategory, GoesThroughItsRawValueAndBack) {
    EXPECT_EQ(rawValue(AppCategory::desktop), "Desktop Application");
    EXPECT_EQ(rawValue(AppCategory::terminal), "Terminal / CLI Tool");
    EXPECT_EQ(appCategory("Desktop Application"), AppCategory::desktop);
    EXPECT_EQ(appCategory("Terminal / CLI Tool"), AppCategory::terminal);
}

TEST(AppCategory, NoOtherTextIsACategory) {
    for (const char* text : {"desktop application", "DESKTOP APPLICATION", "Desktop Application ", "Desktop",
                             "desktop", "Terminal", "Terminal/CLI Tool", ""}) {
        EXPECT_EQ(appCategory(text), std::nullopt) << text;
    }
}

} // namespace
} // namespace zentrill
