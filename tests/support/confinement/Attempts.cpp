#include "support/confinement/Attempts.h"

#include <cstdlib>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zentrill::confinement {

namespace {

bool opens(const std::string& path, int flags) {
    const int opened = ::open(path.c_str(), flags | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (opened >= 0) {
        ::close(opened);
    }
    return opened >= 0;
}

bool isBelow(const std::string& path, const std::vector<std::string>& folders) {
    for (const std::string& folder : folders) {
        if ((path + "/").starts_with(folder + "/")) {
            return true;
        }
    }
    return false;
}

} // namespace

std::optional<std::string> succeededAttempt(const Scratch& scratch,
                                            const std::vector<std::string>& writable) {
    if (opens(scratch.canary, 0) || ::unlink(scratch.canary.c_str()) == 0) {
        return scratch.canary;
    }
    const char* home = std::getenv("HOME");
    for (const char* name : {"/", "/etc", "/usr", "/usr/bin", "/var", "/root", "/home", home}) {
        std::error_code missing;
        const std::filesystem::path folder = std::filesystem::canonical(name != nullptr ? name : "", missing);
        if (!missing && !isBelow(folder, writable) && opens(folder, O_TMPFILE)) {
            return folder;
        }
    }
    return std::nullopt;
}

} // namespace zentrill::confinement
