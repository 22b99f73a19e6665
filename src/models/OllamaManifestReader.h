#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace zentrill {

/// The sizes that a manifest states, each missing where it is no integer in 64 bits.
struct ManifestSizes {
    std::optional<std::int64_t> config;
    std::vector<std::optional<std::int64_t>> layers;
};

/// Reads a manifest's text: an object with the object "config" and the array of objects "layers". Nothing
/// for text that is not JSON, is nested too deeply or has another shape. Of two members with one name the
/// last one counts. Builds no tree and does not recurse, whatever the text.
[[nodiscard]] std::optional<ManifestSizes> readManifestSizes(std::string_view manifest);

} // namespace zentrill
