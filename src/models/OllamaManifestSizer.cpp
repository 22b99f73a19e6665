#include "models/OllamaManifestSizer.h"

#include "models/OllamaManifestFile.h"
#include "models/OllamaManifestReader.h"

namespace zentrill::OllamaManifestSizer {

namespace {

std::optional<std::int64_t> sumOf(const OllamaManifest& manifest) {
    if (!manifest.config.size || *manifest.config.size < 0) {
        return std::nullopt;
    }
    std::int64_t total = *manifest.config.size;
    for (const OllamaBlob& layer : manifest.layers) {
        if (!layer.size || *layer.size < 0 || __builtin_add_overflow(total, *layer.size, &total)) {
            return std::nullopt;
        }
    }
    return total;
}

} // namespace

std::optional<std::int64_t> size(const std::string& atPath) {
    const std::optional<std::string> text = ollamaManifestText(atPath);
    return text ? sizeOfManifest(*text) : std::nullopt;
}

std::optional<std::int64_t> sizeOfManifest(std::string_view manifest) {
    const std::optional<OllamaManifest> read = readOllamaManifest(manifest);
    return read ? sumOf(*read) : std::nullopt;
}

} // namespace zentrill::OllamaManifestSizer
