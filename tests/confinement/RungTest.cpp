#include "Canary.h"
#include "ForcedRung.h"
#include "support/ChildProcess.h"
#include "support/confinement/Confinement.h"
#include "support/confinement/Landlock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zentrill {
namespace {

using confinement::Rung;
using test::Canary;
using test::passesInChild;
using test::takeRung;
using testing::IsEmpty;
using testing::SizeIs;

/// Every attempt would do harm if nothing stood in its way.
TEST(CanaryTest, EveryAttemptWorksWithoutConfinement) {
    ASSERT_THAT(Canary::attempts(), SizeIs(testing::Ge(20)));
    for (const Canary::Attempt& attempt : Canary::attempts()) {
        const Canary canary;
        const test::TemporaryDirectory inside;
        inside.makeFile("file", "content");
        EXPECT_TRUE(attempt.works(canary.path(), inside.path())) << attempt.name;
    }
}

/// Says which of the rungs the other tests go through.
class AllowedRungTest : public testing::TestWithParam<Rung> {};

TEST_P(AllowedRungTest, CanBeTaken) {
    if (const auto obstacle = test::rungObstacle(GetParam())) {
        GTEST_SKIP() << *obstacle;
    }
    EXPECT_TRUE(passesInChild([] {
        takeRung(GetParam());
        EXPECT_EQ(std::getenv("ZENTRILL_CONFINED"), nameOf(GetParam()));
    }));
}

INSTANTIATE_TEST_SUITE_P(Each, AllowedRungTest, testing::ValuesIn(confinement::rungs),
                         [](const testing::TestParamInfo<Rung>& rung) {
                             return std::string(nameOf(rung.param));
                         });

/// Each goes through all rungs that this machine allows.
class RungTest : public testing::Test {
protected:
    void SetUp() override {
        if (rungs_.empty()) {
            GTEST_SKIP() << "needs a rung within the one that confines this program";
        }
    }

    /// Runs `body` with each rung.
    template <typename Body>
    void onEach(const Body& body) const {
        for (const Rung rung : rungs_) {
            SCOPED_TRACE(nameOf(rung));
            body(rung);
        }
    }

private:
    std::vector<Rung> rungs_ = test::allowedRungs();
};

TEST_F(RungTest, NothingOutsideCanBeChanged) {
    onEach([](Rung rung) {
        const Canary canary;
        const std::vector<std::string> before = canary.state();
        ASSERT_THAT(before, SizeIs(4));
        EXPECT_TRUE(passesInChild([&] {
            takeRung(rung);
            const test::TemporaryDirectory inside;
            std::vector<std::string> working = canary.workingAttempts(inside.path());
            if (rung == Rung::landlock && confinement::landlockVersion() < 3) {
                std::erase_if(working, Canary::onlyEmptiesFiles);
            }
            EXPECT_THAT(working, IsEmpty());
        }));
        EXPECT_EQ(canary.state(), before);
    });
}

TEST_F(RungTest, ItsOwnFoldersTakeEverything) {
    onEach([](Rung rung) {
        if (rung == Rung::landlock && confinement::landlockVersion() < 2) {
            return; // Cannot move items from one folder to another.
        }
        EXPECT_TRUE(passesInChild([&] {
            takeRung(rung);
            for (const char* variable : {"TMPDIR", "ZENTRILL_MEMORY"}) {
                ASSERT_NE(std::getenv(variable), nullptr);
                SCOPED_TRACE(variable);
                for (const Canary::Attempt& attempt : Canary::attempts()) {
                    ::setenv("TMPDIR", std::getenv(variable), 1);
                    const Canary canary;
                    const test::TemporaryDirectory inside;
                    inside.makeFile("file", "content");
                    EXPECT_TRUE(attempt.works(canary.path(), inside.path())) << attempt.name;
                }
            }
            for (const char* device : {"/dev/null", "/dev/zero", "/dev/full"}) {
                const int opened = ::open(device, O_WRONLY | O_CLOEXEC);
                EXPECT_GE(opened, 0) << device;
                ::close(opened);
            }
        }));
    });
}

/// Whoever leaves its own files unreadable notices it, as it does without confinement.
TEST_F(RungTest, AnOrdinaryUserStaysOne) {
    onEach([](Rung rung) {
        EXPECT_TRUE(passesInChild([&] {
            const uid_t before = ::geteuid();
            takeRung(rung);
            if (rung == Rung::user) {
                EXPECT_NE(::geteuid(), 0U);
            } else {
                EXPECT_EQ(::geteuid(), before);
            }
            const test::TemporaryDirectory folder;
            const std::string file = folder.makeFile("file");
            std::filesystem::permissions(file, std::filesystem::perms::none);
            EXPECT_EQ(::access(file.c_str(), R_OK) == 0, ::geteuid() == 0);
        }));
    });
}

/// A program that a confined one starts confines itself no more, but only if it finds itself confined.
TEST_F(RungTest, IsTakenOnce) {
    onEach([](Rung rung) {
        EXPECT_TRUE(passesInChild([&] {
            takeRung(rung);
            const std::string scratch = std::getenv("TMPDIR");
            EXPECT_EQ(confinement::confineThisProcess().rung, rung);
            EXPECT_EQ(std::getenv("TMPDIR"), scratch);
        }));
        const test::TemporaryDirectory elsewhere;
        elsewhere.makeFile("canary");
        const std::string claimed = elsewhere.makeDirectory("scratch");
        std::filesystem::permissions(elsewhere.path(), std::filesystem::perms(0755));
        std::filesystem::permissions(claimed, std::filesystem::perms(01777));
        EXPECT_TRUE(passesInChild([&] {
            const std::string name(nameOf(rung));
            ::setenv("ZENTRILL_CONFINEMENT", name.c_str(), 1);
            ::setenv("ZENTRILL_CONFINED", name.c_str(), 1);
            ::setenv("TMPDIR", claimed.c_str(), 1);
            ::setenv("ZENTRILL_MEMORY", claimed.c_str(), 1);
            EXPECT_EQ(confinement::confineThisProcess().rung, rung);
            EXPECT_NE(std::getenv("TMPDIR"), claimed);
            EXPECT_NE(::mkdir(elsewhere.path("other").c_str(), 0700), 0);
        }));
    });
}

TEST(ConfinementTest, AForcedRungThatDoesNotExistIsAnError) {
    EXPECT_TRUE(passesInChild([] {
        ::setenv("ZENTRILL_CONFINEMENT", "ladder", 1);
        EXPECT_THROW(static_cast<void>(confinement::confineThisProcess()), std::invalid_argument);
    }));
}

TEST(ConfinementTest, WithoutARungThereIsNoConfinement) {
    const test::TemporaryDirectory folder;
    EXPECT_TRUE(passesInChild([&] {
        ::setenv("TMPDIR", folder.path().c_str(), 1);
        ::setenv("ZENTRILL_CONFINEMENT", "none", 1);
        EXPECT_THROW(static_cast<void>(confinement::confineThisProcess()), confinement::NoRung);
    }));
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

/// A rung that this process cannot have, whatever the machine allows.
TEST(ConfinementTest, AForcedRungThatCannotBeHadIsAnErrorThatLeavesNothing) {
    const test::TemporaryDirectory folder;
    const test::TemporaryDirectory another;
    EXPECT_TRUE(passesInChild([&] {
        ::setenv("TMPDIR", folder.path().c_str(), 1);
        ::setenv("ZENTRILL_CONFINEMENT", "user", 1);
        try {
            static_cast<void>(confinement::confineThisProcess({another.path()}));
            ADD_FAILURE() << "another user got the folder";
        } catch (const std::runtime_error& error) {
            EXPECT_THAT(error.what(), testing::HasSubstr("ZENTRILL_CONFINEMENT cannot be had here: user: "));
        }
    }));
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

} // namespace
} // namespace zentrill
