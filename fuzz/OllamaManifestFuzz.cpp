#include "models/OllamaManifestSizer.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string_view>

namespace {

/// The size by another road, for manifests whose sizes are plain integers: a tree of the whole text.
std::optional<std::int64_t> sizeByTree(const nlohmann::json& tree) {
    const auto sizeOf = [](const nlohmann::json& item) -> std::optional<std::int64_t> {
        if (!item.is_object() || !item.contains("size") || !item["size"].is_number_integer()) {
            return std::nullopt;
        }
        if (item["size"].is_number_unsigned() && item["size"].get<std::uint64_t>() > INT64_MAX) {
            return std::nullopt;
        }
        const auto size = item["size"].get<std::int64_t>();
        return size < 0 ? std::nullopt : std::optional(size);
    };
    if (!tree.is_object() || !tree.contains("config") || !tree.contains("layers") ||
        !tree["layers"].is_array()) {
        return std::nullopt;
    }
    std::optional<std::int64_t> total = sizeOf(tree["config"]);
    for (const nlohmann::json& layer : tree["layers"]) {
        const std::optional<std::int64_t> size = sizeOf(layer);
        std::int64_t sum = 0;
        if (!total || !size || __builtin_add_overflow(*total, *size, &sum)) {
            return std::nullopt;
        }
        total = sum;
    }
    return total;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t length) {
    const std::string_view text(reinterpret_cast<const char*>(data), length);
    const std::optional<std::int64_t> size = zentrill::OllamaManifestSizer::sizeOfManifest(text);
    if (size && *size < 0) {
        std::abort();
    }
    // The tree knows no limit of depth, and ends at a NUL.
    constexpr std::ptrdiff_t shallow = 256;
    if (text.find('\0') != std::string_view::npos || std::count(text.begin(), text.end(), '[') > shallow ||
        std::count(text.begin(), text.end(), '{') > shallow) {
        return 0;
    }
    const nlohmann::json tree = nlohmann::json::parse(text, nullptr, false);
    if (tree.is_discarded()) {
        if (size) {
            std::abort();
        }
        return 0;
    }
    const std::optional<std::int64_t> expected = sizeByTree(tree);
    if (expected && size != expected) {
        std::abort();
    }
    return 0;
}
