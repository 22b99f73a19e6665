#include "platform/BundleLocation.h"

#include "platform/Paths.h"

#include <array>
#include <climits>
#include <cstdint>

#include <unistd.h>
#if defined(__APPLE__)
#include <mach-o/dyld.h>
#endif

namespace zentrill {

namespace {

std::string executablePath() {
    std::array<char, PATH_MAX> path{};
#if defined(__APPLE__)
    auto size = static_cast<std::uint32_t>(path.size());
    return ::_NSGetExecutablePath(path.data(), &size) == 0 ? path.data() : std::string();
#else
    const ssize_t size = ::readlink("/proc/self/exe", path.data(), path.size());
    // A path that fills the buffer may have been cut.
    if (size <= 0 || size == static_cast<ssize_t>(path.size())) {
        return {};
    }
    return {path.data(), static_cast<std::size_t>(size)};
#endif
}

} // namespace

std::string bundleLocation() {
    return bundleLocation(executablePath());
}

std::string bundleLocation(const std::string& executable) {
    if (executable.empty()) {
        return {};
    }
    const std::string standardized = paths::standardized(executable);
    return std::string(paths::parent(paths::parent(paths::parent(standardized))));
}

} // namespace zentrill
