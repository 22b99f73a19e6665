#include "models/OllamaManifestFile.h"

#include "platform/FileDescriptor.h"
#include "platform/Text.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zentrill {

namespace {

/// Registries refuse manifests longer than 4 MiB; those of Ollama have about a kilobyte.
constexpr std::size_t longestManifest = std::size_t{4} << 20U;

} // namespace

std::optional<std::string> ollamaManifestText(const std::string& path) {
    struct stat status{};
    if (hasNul(path)) {
        return std::nullopt;
    }
    // Checked before opening as well, because opening a device can start it.
    if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) ||
        std::cmp_greater(status.st_size, longestManifest)) {
        return std::nullopt;
    }
    std::string text;
    // One byte more than stated, so that the same read reaches the end; a file may still grow meanwhile.
    text.resize(static_cast<std::size_t>(status.st_size) + 1);
    std::size_t length = 0;
    while (length <= longestManifest) {
        if (length == text.size()) {
            text.resize(std::min(2 * text.size(), longestManifest + 1));
        }
        const ssize_t count = ::read(file.get(), text.data() + length, text.size() - length);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return std::nullopt;
        }
        if (count == 0) {
            text.resize(length);
            return text;
        }
        length += static_cast<std::size_t>(count);
    }
    return std::nullopt;
}

} // namespace zentrill
