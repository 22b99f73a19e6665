#include "platform/AccountMenu.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zentrill {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(AccountMenuTest, EntryAndIconAreInTheHomeFoldersDataFolder) {
    EXPECT_THAT(accountMenuItems("com.user.Zentrill", "/home/u/", ""),
                ElementsAre("/home/u/.local/share/applications/com.user.Zentrill.desktop",
                            "/home/u/.local/share/icons/hicolor/scalable/apps/com.user.Zentrill.svg"));
}

TEST(AccountMenuTest, TheAccountMayKeepItsDataElsewhere) {
    EXPECT_THAT(
        accountMenuItems("x.y", "/home/u", "/data/./u/"),
        ElementsAre("/data/u/applications/x.y.desktop", "/data/u/icons/hicolor/scalable/apps/x.y.svg"));
    EXPECT_THAT(accountMenuItems("x.y", "", "/data").front(), "/data/applications/x.y.desktop");
}

TEST(AccountMenuTest, ARelativeDataFolderDoesNotCount) {
    EXPECT_EQ(accountMenuItems("x.y", "/home/u", "data"), accountMenuItems("x.y", "/home/u", ""));
    EXPECT_THAT(accountMenuItems("x.y", "", "data"), IsEmpty());
}

} // namespace
} // namespace zentrill
