#include "support/PrivateMounts.h"

#include "support/ChildProcess.h"

#ifdef __linux__

#include "support/TemporaryDirectory.h"
#include "support/confinement/Check.h"
#include "support/confinement/Namespaces.h"
#include "support/confinement/Trial.h"

#include <sys/mount.h>
#include <unistd.h>

namespace zentrill::test {

using confinement::check;

namespace {

std::optional<std::string> obstacle(const std::string& need, const std::function<void()>& trial) {
    if (const auto failure = confinement::failureInChild(trial)) {
        return "needs " + need + ": " + *failure;
    }
    return std::nullopt;
}

} // namespace

std::optional<std::string> mountObstacle() {
    const TemporaryDirectory folder;
    return obstacle("a mount", [&] {
        enterPrivateMountNamespace();
        mountMemoryDisk(folder.path());
    });
}

void enterPrivateMountNamespace() {
    confinement::takePrivateMounts();
}

void mountMemoryDisk(const std::string& at, const std::string& options) {
    check(::mount("none", at.c_str(), "tmpfs", 0, options.c_str()), "mount tmpfs");
}

void bindMount(const std::string& source, const std::string& target) {
    check(::mount(source.c_str(), target.c_str(), nullptr, MS_BIND, nullptr), "mount");
}

void remountReadOnly(const std::string& at) {
    check(::mount("none", at.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), "remount");
}

std::optional<std::string> rootFolderObstacle() {
    const TemporaryDirectory folder;
    return obstacle("another root folder", [&] { changeRootFolder(folder.path()); });
}

void changeRootFolder(const std::string& folder) {
    if (::chroot(folder.c_str()) != 0) {
        confinement::takePrivateMounts();
        check(::chroot(folder.c_str()), "chroot");
    }
    check(::chdir("/"), "chdir");
}

} // namespace zentrill::test

#else

#include <stdexcept>

namespace zentrill::test {

namespace {

[[noreturn]] void noPrivateMounts() {
    throw std::runtime_error("this system has no private mounts");
}

} // namespace

std::optional<std::string> mountObstacle() {
    return "needs a mount: this system has no private ones";
}

void enterPrivateMountNamespace() {
    noPrivateMounts();
}

void mountMemoryDisk(const std::string& /*at*/, const std::string& /*options*/) {
    noPrivateMounts();
}

void bindMount(const std::string& /*source*/, const std::string& /*target*/) {
    noPrivateMounts();
}

void remountReadOnly(const std::string& /*at*/) {
    noPrivateMounts();
}

std::optional<std::string> rootFolderObstacle() {
    return "needs another root folder: this system has none without its libraries";
}

void changeRootFolder(const std::string& /*folder*/) {
    noPrivateMounts();
}

} // namespace zentrill::test

#endif

namespace zentrill::test {

bool passesWithPrivateMounts(const std::function<void()>& body) {
    return passesInChild([&body] {
        enterPrivateMountNamespace();
        body();
    });
}

} // namespace zentrill::test
