#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The size of an Ollama model as its manifest states it: the config's size plus every layer's, in bytes.
/// The blobs themselves are not looked at, so one that two models share is counted for both.
namespace zentrill::OllamaManifestSizer {

/// Nothing if the manifest is not a regular file, cannot be read, is longer or more deeply nested than any
/// manifest, does not have the shape of one, or if a size in it is missing, negative or not an integer, or
/// the sum does not fit 64 bits. Never waits: a FIFO or a device in the manifest's place is not opened.
[[nodiscard]] std::optional<std::int64_t> size(const std::string& atPath);

/// The same for a manifest's text.
[[nodiscard]] std::optional<std::int64_t> sizeOfManifest(std::string_view manifest);

} // namespace zentrill::OllamaManifestSizer
