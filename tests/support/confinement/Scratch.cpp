#include "support/confinement/Scratch.h"

#include "support/confinement/Check.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zentrill::confinement {

namespace {

std::optional<std::string> freshFolderIn(const char* parent) {
    std::error_code error;
    const std::filesystem::path place = std::filesystem::canonical(parent, error);
    // libc++ takes an empty path for the current folder, and sockets need short paths.
    if (error || *parent == '\0') {
        errno = error ? error.value() : ENOENT;
        return std::nullopt;
    }
    std::string folder = place / "zentrill-XXXXXX";
    if (::mkdtemp(folder.data()) == nullptr) {
        return std::nullopt;
    }
    return folder;
}

std::string freshFolder() {
    const char* wanted = std::getenv("TMPDIR");
    for (const char* parent : {wanted != nullptr ? wanted : "", "/tmp", "/var/tmp"}) {
        if (const auto folder = freshFolderIn(parent)) {
            return *folder;
        }
    }
    throw std::system_error(errno, std::generic_category(), "no folder for temporary files");
}

std::optional<std::string> freshFolderInMemory() {
    // Whoever is confined already has a place of its own there.
    if (const char* own = std::getenv("ZENTRILL_MEMORY")) {
        return freshFolderIn(own);
    }
    return freshFolderIn("/dev/shm");
}

/// Tests of root's turn into other users, who find their way to the folder and make files in it.
void admitOthers(const std::string& folder, mode_t mode) {
    if (::geteuid() == 0) {
        check(::chmod(folder.c_str(), mode), folder);
    }
}

} // namespace

Scratch Scratch::make() {
    const std::string base = freshFolder();
    const std::string folder = base + "/scratch";
    Scratch made = at(folder, freshFolderInMemory().value_or(folder));
    check(::mkdir(folder.c_str(), S_IRWXU), folder);
    admitOthers(base, 0711);
    admitOthers(folder, 01777);
    admitOthers(made.memory, 01777);
    ::close(check(::open(made.canary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR),
                  made.canary));
    return made;
}

Scratch Scratch::at(const std::string& folder, const std::string& memory) {
    const std::string base = std::filesystem::path(folder).parent_path();
    return {.base = base, .folder = folder, .canary = base + "/canary", .memory = memory};
}

std::vector<std::string> Scratch::folders() const {
    if (memory == folder) {
        return {folder};
    }
    return {folder, memory};
}

void Scratch::removeEmpty() const {
    for (const std::string& each : folders()) {
        ::rmdir(each.c_str());
    }
    ::unlink(canary.c_str());
    ::rmdir(base.c_str());
}

} // namespace zentrill::confinement
