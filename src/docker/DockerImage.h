#pragma once

#include "docker/DockerConnection.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zentrill {

/// Whether a container uses an image; `unknown` whenever the scan had any doubt.
enum class DockerImageUsage : std::uint8_t { unused, inUse, unknown };

/// "unused", "inUse" or "unknown".
[[nodiscard]] std::string_view rawValue(DockerImageUsage usage) noexcept;

/// One image as the scan listed it. Its identity is `imageID`.
struct DockerImage {
    /// "sha256:" followed by 64 hexadecimal digits.
    std::string imageID;
    /// "repository:tag" pairs, sorted, without "<none>" entries.
    std::vector<std::string> tags;
    /// Docker's own text for the virtual size, such as "1.24GB".
    std::string size;
    DockerImageUsage usage = DockerImageUsage::unknown;
    DockerConnection connection;

    /// The tags joined by ", ", or "Untagged image".
    [[nodiscard]] std::string displayName() const;

    /// The size in bytes, as exact as the text; nothing if that is not a size.
    [[nodiscard]] std::optional<double> sizeBytes() const;

    /// The first 12 characters of the ID without "sha256:".
    [[nodiscard]] std::string shortID() const;

    bool operator==(const DockerImage&) const = default;
};

/// Whether `imageID` is "sha256:" followed by exactly 64 hexadecimal digits of either case.
[[nodiscard]] bool isFullImageID(std::string_view imageID) noexcept;

} // namespace zentrill

template <>
struct std::hash<zentrill::DockerImage> {
    [[nodiscard]] std::size_t operator()(const zentrill::DockerImage& image) const;
};
