#include "DeletionCases.h"
#include "DeletionForm.h"
#include "deletion/SafeDeletionEngine.h"
#include "platform/FileDescriptor.h"
#include "support/ChildProcess.h"
#include "support/FailingSystemCall.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace zentrill {
namespace {

using test::exists;
using test::newEngine;
using test::shielded;
using test::TemporaryDirectory;
using test::unshielded;
namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// What is asked of this kernel because no other tells it: what is opened, and what happens when a call
/// fails.
class LinuxKernel : public testing::Test {
protected:
    TemporaryDirectory folder_;
};

/// Tells whether anything at the watched paths was opened or read since the last question.
class OpenWatch {
public:
    void add(const std::string& path) const {
        ASSERT_GE(::inotify_add_watch(queue_.get(), path.c_str(), IN_OPEN | IN_ACCESS | IN_DONT_FOLLOW), 0);
    }

    [[nodiscard]] bool sawOpening() const {
        std::array<char, 4096> events{};
        bool opened = false;
        ssize_t length = 0;
        while ((length = ::read(queue_.get(), events.data(), events.size())) > 0) {
            for (std::size_t offset = 0; offset < static_cast<std::size_t>(length);) {
                inotify_event event{};
                std::memcpy(&event, &events.at(offset), sizeof event);
                opened = opened || (event.mask & (IN_OPEN | IN_ACCESS)) != 0;
                offset += sizeof event + event.len;
            }
        }
        return opened;
    }

private:
    FileDescriptor queue_{::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)};
};

TEST_F(LinuxKernel, PipesSocketsAndDevicesAreRemovedWithoutBeingOpened) {
    for (const DeletionOptions& options : {unshielded, shielded}) {
        const std::string tree = folder_.makeDirectory("tree");
        const std::string file = folder_.makeFile("tree/file");
        ASSERT_EQ(::mkfifo((tree + "/pipe").c_str(), 0600), 0);
        // Not everybody may make a device.
        const bool device = ::mknod((tree + "/null").c_str(), S_IFCHR | 0600, ::makedev(1, 3)) == 0;
        EXPECT_TRUE(device || errno == EPERM);
        ASSERT_EQ(::mknod((tree + "/socket").c_str(), S_IFSOCK | 0600, 0), 0);
        const OpenWatch watch;
        for (const char* name : {"/pipe", "/socket", "/file"}) {
            watch.add(tree + name);
        }
        if (device) {
            watch.add(tree + "/null");
        }
        ::close(::open((tree + "/pipe").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
        ASSERT_TRUE(watch.sawOpening()) << "the watch sees nothing";
        EXPECT_TRUE(newEngine().deleteItem(tree, options).succeeded());
        EXPECT_FALSE(watch.sawOpening());
        EXPECT_FALSE(exists(tree));
    }
}

TEST_F(LinuxKernel, NothingAtOrBelowAProtectedFolderIsOpened) {
    const std::string inside = folder_.makeFile("tree/.ssh/deep/config");
    const std::string explicitInside = folder_.makeFile("tree/vault/deep/file");
    const std::string key = folder_.makeFile("tree/id.key");
    const std::string tree = folder_.path("tree");
    const OpenWatch watch;
    for (const char* path : {"/.ssh", "/.ssh/deep", "/.ssh/deep/config", "/vault", "/vault/deep",
                             "/vault/deep/file", "/id.key"}) {
        watch.add(tree + path);
    }
    (void)fs::is_empty(tree + "/.ssh/deep");
    ASSERT_TRUE(watch.sawOpening()) << "the watch sees nothing";
    const DeletionReport report = newEngine().deleteItem(
        tree, {.preserveCredentials = true, .explicitCredentialPaths = {tree + "/vault"}});
    EXPECT_FALSE(watch.sawOpening());
    EXPECT_THAT(report.preserved, UnorderedElementsAre(tree + "/.ssh", tree + "/vault", key));
    EXPECT_THAT(report.removed, IsEmpty());
}

TEST_F(LinuxKernel, AFolderThatCannotBeListedIsAFailureAndStays) {
    const std::string file = folder_.makeFile("tree/file");
    const std::string tree = folder_.path("tree");
    EXPECT_TRUE(test::passesInChild([&] {
        ASSERT_TRUE(test::makeSystemCallFail(SYS_getdents64, EIO));
        for (const DeletionOptions& options : {unshielded, shielded}) {
            const DeletionReport report = newEngine().deleteItem(tree, options);
            EXPECT_THAT(report.failures, ElementsAre(tree + ": Input/output error"));
            EXPECT_THAT(report.removed, IsEmpty());
        }
    }));
    EXPECT_TRUE(exists(file));
}

} // namespace
} // namespace zentrill
