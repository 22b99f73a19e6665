#include "platform/HomeDirectory.h"

#include "support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include <pwd.h>
#include <unistd.h>

namespace zentrill {
namespace {

TEST(HomeDirectory, IsTheEnvironmentsWithoutATrailingSlash) {
    const test::TemporaryHome home;
    EXPECT_EQ(homeDirectory(), home.path());
    ::setenv("HOME", (home.path() + "//").c_str(), 1);
    EXPECT_EQ(homeDirectory(), home.path());
}

TEST(HomeDirectory, IgnoresAValueThatIsNoAbsolutePath) {
    const test::TemporaryHome home;
    for (const char* value : {"", "relative/home", "~"}) {
        ::setenv("HOME", value, 1);
        const std::string found = homeDirectory();
        EXPECT_TRUE(found.empty() || found.front() == '/') << found;
        // Not every user has an entry that tells a home folder.
        EXPECT_EQ(found.empty(), ::getpwuid(::getuid()) == nullptr) << value;
    }
}

} // namespace
} // namespace zentrill
