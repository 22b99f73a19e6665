#include "deletion/UninstallTargets.h"

#include "support/TemporaryHome.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace zentrill {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class UninstallTargetsTest : public testing::Test {
protected:
    /// The targets of the home-relative `entry` for the home folder at `home`.
    static std::vector<std::string> targets(const std::string& entry, const std::string& home) {
        return uninstallTargets(entry, home + entry.substr(1));
    }

    test::TemporaryDirectory folder;
};

TEST_F(UninstallTargetsTest, APlainEntryIsItsOwnTargetWhetherItExistsOrNot) {
    EXPECT_THAT(targets("~/.missing", folder.path()), ElementsAre(folder.path(".missing")));
    EXPECT_THAT(uninstallTargets("/usr/[x]{y,z}", "/usr/[x]{y,z}"), ElementsAre("/usr/[x]{y,z}"));
}

TEST_F(UninstallTargetsTest, APatternStandsForItsSortedMatches) {
    const std::string b = folder.makeDirectory("Caches/b-claude");
    const std::string a = folder.makeFile("Caches/a claude x");
    const std::string dangling = folder.makeLink("Caches/c.claude", "nowhere");
    folder.makeFile("Caches/Claude");
    folder.makeFile("Caches/.claude");
    folder.makeFile("Caches/sub/claude");
    EXPECT_THAT(targets("~/Caches/*claude*", folder.path()), ElementsAre(a, b, dangling));
    EXPECT_THAT(targets("~/Caches/?-claude", folder.path()), ElementsAre(b));
}

TEST_F(UninstallTargetsTest, APatternWithoutMatchesStandsForNothing) {
    EXPECT_THAT(targets("~/Caches/*claude*", folder.path()), IsEmpty());
    folder.makeDirectory("Caches");
    EXPECT_THAT(targets("~/Caches/*claude*", folder.path()), IsEmpty());
}

TEST_F(UninstallTargetsTest, BracesOfAPatternAreExpanded) {
    const std::string a = folder.makeFile("a.x");
    const std::string b = folder.makeFile("b.x");
    folder.makeFile("c.x");
    EXPECT_THAT(targets("~/{b,a}.*", folder.path()), ElementsAre(b, a));
}

TEST_F(UninstallTargetsTest, ATildeThatTheExpanderLeftIsExpandedInAPattern) {
    const test::TemporaryHome home;
    const std::string match = home.makeFile("Caches/claude");
    EXPECT_THAT(uninstallTargets("~/Caches/*claude*", "~/Caches/*claude*"), ElementsAre(match));
}

TEST_F(UninstallTargetsTest, TheNameOfTheHomeFolderIsNoPattern) {
    folder.makeFile("a/.tool");
    folder.makeFile("a/Caches/claude");
    folder.makeFile("ab/Caches/claude");
    for (const char* name :
         {"*", "?", "[ab]", "{a,ab}", "a*", "[a]*", "\\a", "~", "a\\", "*{?,[a]}\\~", "a b", "\xff*"}) {
        const std::string home = folder.path(name);
        EXPECT_THAT(targets("~/.tool", home), ElementsAre(home + "/.tool"));
        EXPECT_THAT(targets("~/Caches/*claude*", home), IsEmpty()) << name;
        const std::string match = folder.makeFile(std::string(name) + "/Caches/claude");
        EXPECT_THAT(targets("~/Caches/*claude*", home), ElementsAre(match));
    }
}

TEST_F(UninstallTargetsTest, ANulDoesNotCutAPatternShort) {
    folder.makeFile("claude");
    const std::string path = folder.path("*") + '\0' + "x";
    EXPECT_THAT(uninstallTargets(path, path), ElementsAre(path));
}

} // namespace
} // namespace zentrill
