#include "support/FileFlags.h"

#ifdef __linux__

#include "platform/FileDescriptor.h"

#include <linux/fs.h>

#include <fcntl.h>
#include <sys/ioctl.h>

namespace zentrill::test {

bool setFileFlag(const std::string& path, FileFlag flag) {
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    int flags = 0;
    if (::ioctl(file.get(), FS_IOC_GETFLAGS, &flags) != 0) {
        return false;
    }
    flags &= ~(FS_IMMUTABLE_FL | FS_APPEND_FL);
    if (flag != FileFlag::none) {
        flags |= flag == FileFlag::immutable ? FS_IMMUTABLE_FL : FS_APPEND_FL;
    }
    return ::ioctl(file.get(), FS_IOC_SETFLAGS, &flags) == 0;
}

} // namespace zentrill::test

#else

#include <sys/stat.h>
#include <unistd.h>

namespace zentrill::test {

bool setFileFlag(const std::string& path, FileFlag flag) {
    unsigned flags = 0;
    if (flag != FileFlag::none) {
        flags = flag == FileFlag::immutable ? UF_IMMUTABLE : UF_APPEND;
    }
    return ::chflags(path.c_str(), flags) == 0;
}

} // namespace zentrill::test

#endif
