#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zentrill {

/// One blob as a manifest states it.
struct OllamaBlob {
    /// In bytes; nothing if it is not a 64-bit integer.
    std::optional<std::int64_t> size{}; // NOLINT(readability-redundant-member-init): GCC warns
    /// As it is written; empty if there is none.
    std::string digest{}; // NOLINT(readability-redundant-member-init)
};

struct OllamaManifest {
    OllamaBlob config;
    std::vector<OllamaBlob> layers;
};

/// Reads a manifest's text: an object with the object "config" and the array of objects "layers". Nothing
/// for text that is not JSON, is nested too deeply or has another shape. Of two members with one name the
/// last one counts. Builds no tree and does not recurse, whatever the text.
[[nodiscard]] std::optional<OllamaManifest> readOllamaManifest(std::string_view manifest);

} // namespace zentrill
