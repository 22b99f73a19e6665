#include "deletion/PathAliases.h"

#include <gtest/gtest.h>

namespace zentrill {
namespace {

TEST(PathAliases, NormalizesTheThreeNamesAndWhatIsBelow) {
    EXPECT_EQ(aliasNormalized("/tmp"), "/private/tmp");
    EXPECT_EQ(aliasNormalized("/tmp/a/b"), "/private/tmp/a/b");
    EXPECT_EQ(aliasNormalized("/var/folders/x"), "/private/var/folders/x");
    EXPECT_EQ(aliasNormalized("/etc/hosts"), "/private/etc/hosts");
    EXPECT_EQ(aliasNormalized("/tmp/"), "/private/tmp/");
}

TEST(PathAliases, LeavesEverythingElse) {
    for (const char* path : {"/tmpfoo", "/TMP/a", "/private/tmp/a", "/a/tmp", "tmp/a", "/", ""}) {
        EXPECT_EQ(aliasNormalized(path), path);
    }
}

TEST(PathAliases, KnowsTheSystemsOwnLinks) {
    EXPECT_TRUE(isSystemAlias("/tmp", "private/tmp"));
    EXPECT_TRUE(isSystemAlias("/var", "/private/var"));
    EXPECT_TRUE(isSystemAlias("/etc", "./private//etc/"));
}

TEST(PathAliases, DistrustsEveryOtherLink) {
    EXPECT_FALSE(isSystemAlias("/tmp", "/private/var"));
    EXPECT_FALSE(isSystemAlias("/tmp", "/home/u/tmp"));
    EXPECT_FALSE(isSystemAlias("/tmp", "../elsewhere/tmp"));
    EXPECT_FALSE(isSystemAlias("/home", "/private/home"));
    EXPECT_FALSE(isSystemAlias("/a/tmp", "/private/tmp"));
    EXPECT_FALSE(isSystemAlias("/private/tmp", "/private/tmp"));
}

} // namespace
} // namespace zentrill
