#pragma once

#include <optional>
#include <string>

namespace zentrill {

/// The text of the manifest at `path`. Nothing if it is not a regular file, cannot be read or is longer than
/// any manifest. Never waits: a FIFO or a device in the manifest's place is not opened.
[[nodiscard]] std::optional<std::string> ollamaManifestText(const std::string& path);

} // namespace zentrill
