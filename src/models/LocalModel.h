#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace zentrill {

/// Labels of the model stores, which decide how a model is deleted.
inline constexpr std::string_view ollamaSource = "Ollama";
inline constexpr std::string_view huggingFaceSource = "HuggingFace / vLLM";
inline constexpr std::string_view lmStudioSource = "LM Studio (GGUF)";

/// One model file or folder found on this machine.
struct LocalModel {
    std::string name;
    std::string source;
    /// 0 when it could not be determined.
    std::int64_t sizeBytes = 0;
    /// Absolute path of the manifest, hub folder or GGUF file.
    std::string path;
    bool isSelected = false;

    /// `source`, a NUL and `path`. Labels and paths contain no NUL, so the IDs of two models differ.
    [[nodiscard]] std::string id() const;

    /// "4.66 GB", "850 MB" or "Unknown size".
    [[nodiscard]] std::string sizeFormatted() const;

    bool operator==(const LocalModel&) const = default;
};

} // namespace zentrill

template <>
struct std::hash<zentrill::LocalModel> {
    [[nodiscard]] std::size_t operator()(const zentrill::LocalModel& model) const;
};
