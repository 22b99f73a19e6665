#include "support/confinement/EmptyFolder.h"

#include <linux/fs.h>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zentrill::confinement {

namespace {

/// Folders below this depth are moved to the top, so that neither descriptors nor the stack run out.
constexpr int deepest = 64;

/// Takes off what would forbid to remove the item, or what is in it.
void unlock(int descriptor) {
    ::fchmod(descriptor, S_IRWXU);
    unsigned flags = 0;
    if (::ioctl(descriptor, FS_IOC_GETFLAGS, &flags) == 0 &&
        (flags & (FS_IMMUTABLE_FL | FS_APPEND_FL)) != 0) {
        flags &= ~static_cast<unsigned>(FS_IMMUTABLE_FL | FS_APPEND_FL);
        ::ioctl(descriptor, FS_IOC_SETFLAGS, &flags);
    }
}

int openUnlocked(int folder, const std::string& name, int flags) {
    const int how = flags | O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    int opened = ::openat(folder, name.c_str(), how);
    if (opened < 0 && ::fchmodat(folder, name.c_str(), S_IRWXU, 0) == 0) {
        opened = ::openat(folder, name.c_str(), how);
    }
    if (opened >= 0) {
        unlock(opened);
    }
    return opened;
}

class Emptying {
public:
    explicit Emptying(int top) : top_(top) {
        struct stat status{};
        ::fstat(top, &status);
        fileSystem_ = status.st_dev;
    }

    /// Whether anything went.
    bool empty(int folder, int depth) {
        bool progress = false;
        for (const std::string& name : namesIn(folder)) {
            progress = removeItem(folder, name, depth) || progress;
        }
        return progress;
    }

private:
    static std::vector<std::string> namesIn(int folder) {
        std::vector<std::string> names;
        const int listed = ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        DIR* const entries = listed < 0 ? nullptr : ::fdopendir(listed);
        if (entries == nullptr) {
            return names;
        }
        while (const dirent* entry = ::readdir(entries)) {
            const std::string name = static_cast<const char*>(entry->d_name);
            if (name != "." && name != "..") {
                names.push_back(name);
            }
        }
        ::closedir(entries);
        return names;
    }

    bool removeItem(int folder, const std::string& name, int depth) {
        if (::unlinkat(folder, name.c_str(), 0) == 0) {
            return true;
        }
        struct stat status{};
        if (::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0 ||
            status.st_dev != fileSystem_) {
            return false;
        }
        if (S_ISDIR(status.st_mode)) {
            return removeFolder(folder, name, depth);
        }
        // Nothing is opened that somebody could wait at, and no link is gone through.
        if (S_ISREG(status.st_mode)) {
            if (const int opened = openUnlocked(folder, name, 0); opened >= 0) {
                ::close(opened);
            }
        }
        return ::unlinkat(folder, name.c_str(), 0) == 0;
    }

    bool removeFolder(int folder, const std::string& name, int depth) {
        const int opened = openUnlocked(folder, name, O_DIRECTORY);
        if (opened < 0) {
            return ::unlinkat(folder, name.c_str(), AT_REMOVEDIR) == 0;
        }
        bool progress = false;
        if (depth >= deepest) {
            const std::string place = "moved-" + std::to_string(++moved_);
            progress = ::renameat(folder, name.c_str(), top_, place.c_str()) == 0;
        } else {
            progress = empty(opened, depth + 1);
        }
        ::close(opened);
        return ::unlinkat(folder, name.c_str(), AT_REMOVEDIR) == 0 || progress;
    }

    int top_;
    dev_t fileSystem_ = 0;
    unsigned moved_ = 0;
};

} // namespace

void emptyFolder(const std::string& path) {
    const int top = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (top < 0) {
        return;
    }
    unlock(top);
    Emptying emptying(top);
    while (emptying.empty(top, 0)) {
    }
    ::close(top);
}

} // namespace zentrill::confinement
