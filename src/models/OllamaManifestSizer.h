#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The size of an Ollama model as its manifest states it: the config's size plus every layer's, in bytes.
/// The blobs themselves are not looked at, so one that two models share is counted for both.
namespace zentrill::OllamaManifestSizer {

/// Nothing when the manifest is no regular file, cannot be read, is longer or nested deeper than any
/// manifest, is not of a manifest's shape, or states a size that is missing, negative, no integer or,
/// summed up, past 64 bits. Never waits: a FIFO or a device in the manifest's place is not opened.
[[nodiscard]] std::optional<std::int64_t> size(const std::string& atPath);

/// The same for a manifest's text.
[[nodiscard]] std::optional<std::int64_t> sizeOfManifest(std::string_view manifest);

} // namespace zentrill::OllamaManifestSizer
