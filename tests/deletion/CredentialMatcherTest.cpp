#include "deletion/CredentialMatcher.h"

#include <gtest/gtest.h>

#include <string>

namespace zentrill {
namespace {

TEST(CredentialMatcher, KnowsTheElevenNames) {
    const CredentialMatcher matcher;
    for (const char* name : {".env", "auth.json", "oauth_creds.json", "credentials.json", "credentials",
                             "keys.txt", "api_key", "api-key", "token", "access_token", "refresh_token"}) {
        EXPECT_TRUE(matcher.isCredential(std::string("/Users/u/.tool/") + name)) << name;
    }
}

TEST(CredentialMatcher, IgnoresLetterCase) {
    const CredentialMatcher matcher;
    EXPECT_TRUE(matcher.isCredential("/Users/u/AUTH.JSON"));
    EXPECT_TRUE(matcher.isCredential("/Users/u/id.KEY"));
    EXPECT_TRUE(matcher.isCredential("/Users/u/.SSH/config"));
    EXPECT_TRUE(matcher.isCredential("/Users/u/.GnuPG"));
}

TEST(CredentialMatcher, TheKelvinSignIsAnUpperCaseK) {
    const CredentialMatcher matcher;
    for (const char* name : {"\u212Aeys.txt", "api_\u212AEY", "TO\u212Aen", "id.\u212Aey", "a.TO\u212AEN"}) {
        EXPECT_TRUE(matcher.isCredential(std::string("/Users/u/") + name)) << name;
        EXPECT_TRUE(matcher.isCredentialName(name)) << name;
    }
    // Of this other letter the lower case is an i with a dot of its own.
    EXPECT_FALSE(matcher.isCredential("/Users/u/server.l\u0130c"));
    EXPECT_FALSE(matcher.isCredential("/Users/u/\u212Aeys"));
    EXPECT_FALSE(matcher.isCredential("/Users/u/api_\xE2\x84"));
}

TEST(CredentialMatcher, KnowsTheSuffixes) {
    const CredentialMatcher matcher;
    EXPECT_TRUE(matcher.isCredential("/opt/server.lic"));
    EXPECT_TRUE(matcher.isCredential("/opt/a.token"));
    EXPECT_TRUE(matcher.isCredential("/opt/.key"));
    EXPECT_FALSE(matcher.isCredential("/opt/key"));
    EXPECT_FALSE(matcher.isCredential("/opt/a.keys"));
    EXPECT_TRUE(matcher.isCredential("/opt/" + std::string(300, 'x') + ".key"));
}

TEST(CredentialMatcher, MatchesWholeComponentsOnly) {
    const CredentialMatcher matcher;
    EXPECT_FALSE(matcher.isCredential("/Users/u/auth.json.bak"));
    EXPECT_FALSE(matcher.isCredential("/Users/u/my-auth.json"));
    EXPECT_FALSE(matcher.isCredential("/Users/u/tokens"));
    EXPECT_FALSE(matcher.isCredential("/Users/u/.hermes/env"));
    EXPECT_FALSE(matcher.isCredential("/Users/u/.sshd/config"));
    EXPECT_FALSE(matcher.isCredential("/Users/u/.codex/config.toml"));
}

TEST(CredentialMatcher, ProtectsSensitiveFoldersAtAnyDepthButNamesOnlyAtTheEnd) {
    const CredentialMatcher matcher;
    EXPECT_TRUE(matcher.isCredential("/Users/u/.ssh"));
    EXPECT_TRUE(matcher.isCredential("/Users/u/.ssh/a/b/c"));
    EXPECT_TRUE(matcher.isCredential("/Users/u/.ssh/"));
    EXPECT_FALSE(matcher.isCredential("/Users/u/credentials/readme"));
}

TEST(CredentialMatcher, RootAndEmptyAreNone) {
    const CredentialMatcher matcher;
    EXPECT_FALSE(matcher.isCredential("/"));
    EXPECT_FALSE(matcher.isCredential(""));
}

TEST(CredentialMatcher, TrailingSlashesDoNotHideTheName) {
    EXPECT_TRUE(CredentialMatcher().isCredential("/Users/u/auth.json//"));
}

TEST(CredentialMatcher, AnswersForANameAsForAPath) {
    const CredentialMatcher matcher;
    for (const char* name : {"token", "TOKEN", "tokens", ".ssh", "a.lic", "lic", ".lic", "x\n", "\xff.KEY"}) {
        EXPECT_EQ(matcher.isCredentialName(name), matcher.isCredential(std::string("/a/") + name)) << name;
    }
}

} // namespace
} // namespace zentrill
