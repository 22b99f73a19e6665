#include "deletion/HeldThread.h"

#include "support/ChildProcess.h"
#include "support/OrdinaryUser.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <stdexcept>
#include <thread>

#include <sys/resource.h>

namespace zentrill {
namespace {

TEST(HeldThread, RunsOnAThreadOfItsOwnAndAnswersOnTheCallers) {
    const std::thread::id caller = std::this_thread::get_id();
    std::thread::id entered;
    std::thread::id ran;
    std::thread::id answered;
    HeldThread held({.enter = [&](const DirectoryHandle&) {
        entered = std::this_thread::get_id();
        return 0;
    }});
    const auto question = [&] {
        answered = std::this_thread::get_id();
        return true;
    };
    held.run({}, [&] {
        ran = std::this_thread::get_id();
        EXPECT_TRUE(held.ask(question));
        EXPECT_FALSE(held.ask([] { return false; }));
    });
    EXPECT_NE(ran, caller);
    EXPECT_EQ(entered, ran);
    EXPECT_EQ(answered, caller);
    EXPECT_TRUE(held.ask(question)) << "outside of a run";
}

TEST(HeldThread, WithoutADomainEverythingHappensOnTheCallersThread) {
    HeldThread held({});
    std::thread::id ran;
    held.run({}, [&] {
        ran = std::this_thread::get_id();
        EXPECT_TRUE(held.ask([] { return true; }));
    });
    EXPECT_EQ(ran, std::this_thread::get_id());
}

TEST(HeldThread, ADomainThatCannotBeEnteredChangesNothing) {
    HeldThread held({.enter = [](const DirectoryHandle&) { return EPERM; }});
    bool ran = false;
    held.run({}, [&] { ran = true; });
    EXPECT_TRUE(ran);
}

TEST(HeldThread, WithoutAThreadToBeHadTheCallerDoesItAndIsNeverRestricted) {
    EXPECT_TRUE(test::passesInChild([] {
        test::becomeOrdinaryUser();
        const rlimit none{.rlim_cur = 0, .rlim_max = 0};
        ASSERT_EQ(::setrlimit(RLIMIT_NPROC, &none), 0);
        bool entered = false;
        std::thread::id ran;
        HeldThread held({.enter = [&](const DirectoryHandle&) {
            entered = true;
            return 0;
        }});
        held.run({}, [&] {
            ran = std::this_thread::get_id();
            EXPECT_TRUE(held.ask([] { return true; }));
        });
        EXPECT_EQ(ran, std::this_thread::get_id());
        EXPECT_FALSE(entered);
    }));
}

TEST(HeldThread, PassesOnWhatIsThrownOnEitherThread) {
    HeldThread held({.enter = [](const DirectoryHandle&) { return 0; }});
    EXPECT_THROW(held.run({}, [] { throw std::runtime_error("body"); }), std::runtime_error);
    EXPECT_THROW(held.run({}, [&] { (void)held.ask([]() -> bool { throw std::logic_error("question"); }); }),
                 std::logic_error);
    bool ran = false;
    held.run({}, [&] { ran = true; });
    EXPECT_TRUE(ran);
}

} // namespace
} // namespace zentrill
