#include "deletion/ItemPaths.h"

#include <gtest/gtest.h>

namespace zentrill {
namespace {

TEST(ItemPaths, AreReportedInTheFormOfTheCaller) {
    const ItemPaths paths("/tmp/x/../item", "/tmp/item");
    EXPECT_EQ(paths.name(), "item");
    EXPECT_EQ(paths.reported(""), "/tmp/x/../item");
    EXPECT_EQ(paths.reported("/sub"), "/tmp/x/../item/sub");
    EXPECT_EQ(paths.reported("/sub", "file"), "/tmp/x/../item/sub/file");
    EXPECT_EQ(paths.reported("", "file"), "/tmp/x/../item/file");
}

TEST(ItemPaths, AreComparedInTheStandardForm) {
    const ItemPaths paths("/tmp/x/../item", "/tmp/item");
    EXPECT_EQ(paths.standardized(""), "/tmp/item");
    EXPECT_EQ(paths.standardized("/sub/file"), "/tmp/item/sub/file");
}

TEST(ItemPaths, KeepTheSlashesAtTheEndForTheItemAlone) {
    const ItemPaths paths("/tmp/item//", "/tmp/item");
    EXPECT_EQ(paths.name(), "item");
    EXPECT_EQ(paths.reported(""), "/tmp/item//");
    EXPECT_EQ(paths.reported("/sub"), "/tmp/item/sub");
    EXPECT_EQ(paths.reported("", "file"), "/tmp/item/file");
}

} // namespace
} // namespace zentrill
