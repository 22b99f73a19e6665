#include "support/confinement/Namespaces.h"

#include "support/confinement/Check.h"

#include <array>
#include <filesystem>
#include <iterator>
#include <linux/capability.h>
#include <sched.h>
#include <stdexcept>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace zentrill::confinement {

namespace {

void write(const char* path, const std::string& text) {
    const int file = check(::open(path, O_WRONLY | O_CLOEXEC), path);
    const ssize_t written = ::write(file, text.data(), text.size());
    const int error = errno;
    ::close(file);
    errno = error;
    check(written, path);
}

/// Sanitizers start threads before the program does.
bool hasOneThread() {
    const std::filesystem::directory_iterator threads("/proc/self/task");
    return std::distance(begin(threads), end(threads)) == 1;
}

void enterUserNamespace() {
    // The kernel refuses with a mere "Invalid argument".
    if (!hasOneThread()) {
        throw std::runtime_error("a process of several threads cannot enter a user namespace");
    }
    const std::string user = std::to_string(::geteuid());
    const std::string group = std::to_string(::getegid());
    check(::unshare(CLONE_NEWUSER | CLONE_NEWNS), "unshare");
    write("/proc/self/setgroups", "deny");
    write("/proc/self/uid_map", user + " " + user + " 1");
    write("/proc/self/gid_map", group + " " + group + " 1");
}

/// An ordinary user who holds every right over its own files would see none of its own locks.
void dropRights() {
    __user_cap_header_struct header{.version = _LINUX_CAPABILITY_VERSION_3, .pid = 0};
    const std::array<__user_cap_data_struct, 2> none{};
    check(::syscall(SYS_capset, &header, none.data()), "capset");
}

void setReadOnly(const std::string& at, bool readOnly, unsigned flags, bool required = true) {
    mount_attr change{};
    (readOnly ? change.attr_set : change.attr_clr) = MOUNT_ATTR_RDONLY;
    const int result = ::mount_setattr(AT_FDCWD, at.c_str(), flags, &change, sizeof change);
    if (required) {
        check(result, at);
    }
}

} // namespace

void takePrivateMounts() {
    if (::unshare(CLONE_NEWNS) != 0) {
        // Root would no longer be able to become anybody else in there.
        check(::geteuid() == 0 ? -1 : 0, "unshare");
        enterUserNamespace();
    }
    check(::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr), "private mounts");
}

void enterNamespaces(const std::vector<std::string>& writable) {
    std::error_code unknown;
    const std::filesystem::path here = std::filesystem::current_path(unknown);
    takePrivateMounts();
    for (const std::string& folder : writable) {
        check(::mount(folder.c_str(), folder.c_str(), nullptr, MS_BIND | MS_REC, nullptr), folder);
    }
    setReadOnly("/", true, AT_RECURSIVE);
    for (const std::string& folder : writable) {
        setReadOnly(folder, false, 0);
    }
    // Neither holds anybody's files. A user namespace inside this one and a Docker Engine write to them.
    setReadOnly("/proc", false, 0, false);
    setReadOnly("/sys/fs/cgroup", false, AT_RECURSIVE, false);
    if (::geteuid() != 0) {
        dropRights();
    }
    // The way back to where the process is may lead through one of the new mounts.
    if (!unknown && ::chdir(here.c_str()) != 0) {
        check(::chdir("/"), "/");
    }
}

} // namespace zentrill::confinement
