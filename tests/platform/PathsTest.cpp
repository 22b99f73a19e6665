#include "platform/Paths.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zentrill::paths {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Paths, StandardizesByTextAlone) {
    EXPECT_EQ(standardized("/a//b/./c/../d/"), "/a/b/d");
    EXPECT_EQ(standardized("/"), "/");
    EXPECT_EQ(standardized("//"), "/");
    EXPECT_EQ(standardized("/.."), "/");
    EXPECT_EQ(standardized("/../a"), "/a");
    EXPECT_EQ(standardized("a/../../b"), "../b");
    EXPECT_EQ(standardized("../../a"), "../../a");
    EXPECT_EQ(standardized("a/.."), ".");
    EXPECT_EQ(standardized(""), "");
}

TEST(Paths, KeepsBytesThatAreNoText) {
    EXPECT_EQ(standardized("/a/\xff\xfe\n/b"), "/a/\xff\xfe\n/b");
}

TEST(Paths, SplitsIntoComponents) {
    EXPECT_THAT(components("/a/b//c/"), ElementsAre("/", "a", "b", "c"));
    EXPECT_THAT(components("a/b"), ElementsAre("a", "b"));
    EXPECT_THAT(components("/"), ElementsAre("/"));
    EXPECT_THAT(components(""), IsEmpty());
}

TEST(Paths, FindsTheLastComponentAndItsParent) {
    EXPECT_EQ(lastComponent("/a/b"), "b");
    EXPECT_EQ(lastComponent("/a/b//"), "b");
    EXPECT_EQ(lastComponent("/"), "/");
    EXPECT_EQ(lastComponent("b"), "b");
    EXPECT_EQ(lastComponent(""), "");
    EXPECT_EQ(parent("/a/b"), "/a");
    EXPECT_EQ(parent("/a//b/"), "/a");
    EXPECT_EQ(parent("/a"), "/");
    EXPECT_EQ(parent("/"), "/");
    EXPECT_EQ(parent("a"), "");
}

TEST(Paths, FindsTheExtension) {
    EXPECT_EQ(extension("/Applications/Zentrill.app"), "app");
    EXPECT_EQ(extension("/Applications/Zentrill.app/"), "app");
    EXPECT_EQ(extension("/a.b/c"), "");
    EXPECT_EQ(extension("/a/.app"), "");
    EXPECT_EQ(extension("/a/b."), "");
}

TEST(Paths, JoinsWithOneSlash) {
    EXPECT_EQ(appending("/a", "b"), "/a/b");
    EXPECT_EQ(appending("/a/", "/b"), "/a/b");
    EXPECT_EQ(appending("/", "b"), "/b");
}

TEST(Paths, ComparesAncestorsByWholeComponents) {
    EXPECT_TRUE(isSameOrBelow("/a/b", "/a"));
    EXPECT_TRUE(isSameOrBelow("/a", "/a"));
    EXPECT_TRUE(isSameOrBelow("/a", "/"));
    EXPECT_FALSE(isSameOrBelow("/ab", "/a"));
    EXPECT_FALSE(isSameOrBelow("/a", "/a/b"));
}

TEST(Paths, ExpandsOnlyTheOwnHome) {
    EXPECT_EQ(expandingTilde("~", "/home/u"), "/home/u");
    EXPECT_EQ(expandingTilde("~/x", "/home/u"), "/home/u/x");
    EXPECT_EQ(expandingTilde("~other/x", "/home/u"), "~other/x");
    EXPECT_EQ(expandingTilde("/a/~/x", "/home/u"), "/a/~/x");
    EXPECT_EQ(expandingTilde("", "/home/u"), "");
    EXPECT_EQ(expandingTilde("~/x", ""), "~/x");
    EXPECT_EQ(expandingTilde("~", ""), "~");
    EXPECT_EQ(expandingTilde("~/x", "/"), "/x");
    EXPECT_EQ(expandingTilde("~/", "/"), "/");
    EXPECT_EQ(expandingTilde("~", "/"), "/");
}

} // namespace
} // namespace zentrill::paths
