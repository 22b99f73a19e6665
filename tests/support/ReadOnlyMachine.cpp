#include "support/ReadOnlyMachine.h"

#include <cerrno>
#include <filesystem>
#include <sched.h>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zentrill::test {

namespace {

void check(int result, const char* step) {
    if (result < 0) {
        throw std::system_error(errno, std::generic_category(), step);
    }
}

void requireReadOnly(const char* folder) {
    const int opened = ::open(folder, O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600);
    if (opened >= 0) {
        ::close(opened);
        throw std::runtime_error(std::string(folder) + " can still be written to");
    }
    if (errno != EROFS) {
        throw std::system_error(errno, std::generic_category(), folder);
    }
}

} // namespace

bool ReadOnlyMachine::possible() {
    return ::geteuid() == 0;
}

ReadOnlyMachine::ReadOnlyMachine() {
    outsideNamespace_ = ::open("/proc/self/ns/mnt", O_RDONLY | O_CLOEXEC);
    check(outsideNamespace_, "mount namespace");
    scratch_ = "/tmp/zentrill-machine-XXXXXX";
    if (::mkdtemp(scratch_.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), scratch_);
    }
    check(::chmod(scratch_.c_str(), 01777), "chmod");
    check(::unshare(CLONE_NEWNS), "unshare");
    check(::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr), "private mounts");
    check(::mount(scratch_.c_str(), "/tmp", nullptr, MS_BIND, nullptr), "/tmp");
    mount_attr readOnly{};
    readOnly.attr_set = MOUNT_ATTR_RDONLY;
    check(::mount_setattr(AT_FDCWD, "/", AT_RECURSIVE, &readOnly, sizeof readOnly), "read-only machine");
    mount_attr writable{};
    writable.attr_clr = MOUNT_ATTR_RDONLY;
    check(::mount_setattr(AT_FDCWD, "/tmp", 0, &writable, sizeof writable), "writable /tmp");
    check(::mount("none", "/dev/shm", "tmpfs", 0, "mode=1777"), "/dev/shm");
    check(::chdir("/tmp"), "chdir");
    for (const char* folder : {"/", "/etc", "/usr", "/var", "/root"}) {
        requireReadOnly(folder);
    }
}

ReadOnlyMachine::~ReadOnlyMachine() {
    if (::setns(outsideNamespace_, CLONE_NEWNS) == 0) {
        std::error_code ignored;
        std::filesystem::remove_all(scratch_, ignored);
    }
    ::close(outsideNamespace_);
}

} // namespace zentrill::test
