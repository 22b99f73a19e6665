#include "DeletionCases.h"
#include "DeletionForm.h"
#include "deletion/SafeDeletionEngine.h"
#include "support/ChildProcess.h"
#include "support/PrivateMounts.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <functional>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <string>

#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace zentrill {
namespace {

using test::bindMount;
using test::exists;
using test::newEngine;
using test::passesWithPrivateMounts;
using test::shielded;
using test::TemporaryDirectory;
using test::unshielded;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// From now on the process has no openat2, as on an older kernel or in a sandbox.
void forbidOpenat2(unsigned error) {
    std::array<sock_filter, 4> program{{
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_openat2, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | error),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    }};
    const sock_fprog filter{program.size(), program.data()};
    ASSERT_EQ(::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0), 0);
    ASSERT_EQ(::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter), 0);
    ASSERT_EQ(::syscall(SYS_openat2, -1, nullptr, nullptr, 0), -1);
    ASSERT_EQ(errno, static_cast<int>(error));
}

/// Each runs with every way to notice a mount point: openat2, and without it the look after opening.
class MountPoints : public testing::Test {
protected:
    void SetUp() override {
        if (const auto obstacle = test::mountObstacle()) {
            GTEST_SKIP() << *obstacle;
        }
    }

    /// Runs `body` in a child with mounts and a folder of its own, which it is to limit once all is mounted.
    static void
    eachWay(const std::function<void(const TemporaryDirectory&, const std::function<void()>&)>& body) {
        for (const unsigned error : {0U, unsigned{ENOSYS}, unsigned{EPERM}}) {
            SCOPED_TRACE(error == 0        ? "with openat2"
                         : error == ENOSYS ? "on an older kernel"
                                           : "in a sandbox");
            const TemporaryDirectory folder;
            EXPECT_TRUE(passesWithPrivateMounts([&] {
                body(folder, [error] {
                    if (error != 0) {
                        forbidOpenat2(error);
                    }
                });
            }));
        }
    }
};

TEST_F(MountPoints, AreNeverEnteredNorRemovedAndKeepTheFoldersAbove) {
    eachWay([](const TemporaryDirectory& folder, const std::function<void()>& limit) {
        const std::string foreign = folder.makeDirectory("tree/sub/foreign");
        const std::string own = folder.makeDirectory("tree/sub/own");
        const std::string file = folder.makeFile("tree/sub/file");
        const std::string gone = folder.makeFile("tree/sub/gone");
        const std::string outside = folder.makeFile("outside/data", "content");
        test::mountMemoryDisk(foreign);
        folder.makeFile("tree/sub/foreign/inside");
        bindMount(folder.path("outside"), own); // The device number does not change here.
        bindMount(outside, file);
        limit();
        const std::string tree = folder.path("tree");
        const DeletionReport report = newEngine().deleteItem(tree, shielded);
        EXPECT_THAT(report.failures, UnorderedElementsAre(foreign + ": Device or resource busy",
                                                          own + ": Device or resource busy",
                                                          file + ": Device or resource busy"));
        EXPECT_THAT(report.removed, ElementsAre(gone));
        EXPECT_THAT(
            newEngine().deleteItem(tree, unshielded).failures,
            ElementsAre(testing::StartsWith(tree + ": Device or resource busy (at " + tree + "/sub/")));
        EXPECT_TRUE(exists(foreign + "/inside"));
        EXPECT_TRUE(exists(outside));
        EXPECT_FALSE(exists(gone));
    });
}

TEST_F(MountPoints, AreNotRemovedWhenEmpty) {
    eachWay([](const TemporaryDirectory& folder, const std::function<void()>& limit) {
        const std::string empty = folder.makeDirectory("tree/empty");
        test::mountMemoryDisk(empty);
        limit();
        EXPECT_THAT(newEngine().deleteItem(folder.path("tree"), shielded).failures,
                    ElementsAre(empty + ": Device or resource busy"));
        EXPECT_TRUE(exists(empty));
    });
}

TEST_F(MountPoints, AreRefusedAsTheItemItself) {
    eachWay([](const TemporaryDirectory& folder, const std::function<void()>& limit) {
        const std::string item = folder.makeDirectory("item");
        const std::string inside = folder.makeFile("outside/inside");
        bindMount(folder.path("outside"), item);
        limit();
        for (const DeletionOptions& options : {unshielded, shielded}) {
            const DeletionReport report = newEngine().deleteItem(item, options);
            EXPECT_THAT(report.failures, ElementsAre(item + ": Device or resource busy"));
            EXPECT_THAT(report.removed, IsEmpty());
        }
        EXPECT_TRUE(exists(inside));
    });
}

TEST_F(MountPoints, MayLieOnTheWayToTheItem) {
    eachWay([](const TemporaryDirectory& folder, const std::function<void()>& limit) {
        const std::string volume = folder.makeDirectory("volume");
        test::mountMemoryDisk(volume);
        folder.makeFile("volume/tree/sub/file");
        limit();
        EXPECT_THAT(newEngine().deleteItem(volume + "/tree", unshielded).removed,
                    ElementsAre(volume + "/tree"));
        EXPECT_FALSE(exists(volume + "/tree"));
    });
}

} // namespace
} // namespace zentrill
