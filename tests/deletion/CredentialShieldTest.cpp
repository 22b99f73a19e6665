#include "deletion/CredentialShield.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zentrill {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class CredentialShieldTest : public testing::Test {
protected:
    CredentialMatcher matcher_;
    CredentialShield shield_{matcher_, {"/h/.tool/config.toml", "/h/.tool//keep/", "/tmp/listed"}};
};

TEST_F(CredentialShieldTest, SaysWhyAPathIsProtected) {
    EXPECT_EQ(shield_.reason("/h/.tool/id.key"), CredentialReason::recognized);
    EXPECT_EQ(shield_.reason("/h/.ssh/known_hosts"), CredentialReason::recognized);
    EXPECT_EQ(shield_.reason("/h/.tool/config.toml"), CredentialReason::listed);
    EXPECT_EQ(shield_.reason("/h/.tool/history"), CredentialReason::none);
    EXPECT_TRUE(shield_.isProtected("/h/.tool/config.toml"));
    EXPECT_FALSE(shield_.isProtected("/h/.tool/history"));
}

TEST_F(CredentialShieldTest, PrefersWhatItRecognizesToWhatIsListed) {
    EXPECT_EQ(shield_.reason("/h/.tool/keep/id.key"), CredentialReason::recognized);
}

TEST_F(CredentialShieldTest, ProtectsWhatLiesInsideAListedFolderAndNothingBeside) {
    EXPECT_EQ(shield_.reason("/h/.tool/keep"), CredentialReason::listed);
    EXPECT_EQ(shield_.reason("/h/.tool/keep/deep/file"), CredentialReason::listed);
    EXPECT_EQ(shield_.reason("/h/.tool/keeper"), CredentialReason::none);
    EXPECT_EQ(shield_.reason("/h/.tool"), CredentialReason::none);
}

TEST_F(CredentialShieldTest, ComparesPathsInTheirStandardFormAndPastTheAliases) {
    EXPECT_EQ(shield_.reason("/h/x/..//.tool/./config.toml"), CredentialReason::listed);
    EXPECT_EQ(shield_.reason("/private/tmp/listed/file"), CredentialReason::listed);
    EXPECT_EQ(shield_.reason("/tmp/listed"), CredentialReason::listed);
}

TEST_F(CredentialShieldTest, NamesWhatIsListedInAFolder) {
    EXPECT_THAT(shield_.explicitNames("/h/.tool"), UnorderedElementsAre("config.toml", "keep"));
    EXPECT_THAT(shield_.explicitNames("/private/tmp"), ElementsAre("listed"));
    EXPECT_THAT(shield_.explicitNames("/h"), IsEmpty());
}

TEST_F(CredentialShieldTest, SaysOfANameWhatItSaysOfThePath) {
    const std::vector<std::string_view> names = shield_.explicitNames("/h/.tool");
    for (const char* name : {"id.key", ".ssh", "config.toml", "keep", "keeper", "history"}) {
        EXPECT_EQ(shield_.reasonForName(name, names), shield_.reason(std::string("/h/.tool/") + name))
            << name;
    }
    EXPECT_TRUE(shield_.isProtectedName("keep", names));
    EXPECT_FALSE(shield_.isProtectedName("history", names));
}

TEST_F(CredentialShieldTest, TakesNoPathThatIsNotAbsolute) {
    const CredentialShield shield(matcher_, {"", "relative", "~/file"});
    EXPECT_FALSE(shield.hasExplicitCredentials());
    EXPECT_EQ(shield.reason("/relative"), CredentialReason::none);
    EXPECT_TRUE(shield_.hasExplicitCredentials());
}

TEST_F(CredentialShieldTest, ProtectsEverythingBelowAListedRoot) {
    const CredentialShield shield(matcher_, {"/"});
    EXPECT_EQ(shield.reason("/any/path"), CredentialReason::listed);
    EXPECT_THAT(shield.explicitNames("/"), IsEmpty());
}

} // namespace
} // namespace zentrill
