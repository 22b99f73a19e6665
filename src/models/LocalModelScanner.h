#pragma once

#include "models/LocalModel.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace zentrill {

/// Finds the models that the local runners keep in one home folder. It only reads and never fails: what
/// cannot be read is left out or has size 0.
///
///     const LocalModelScanner scanner(homeDirectory(), log);
///     std::vector<LocalModel> models = scanner.scanOllamaModels();
///
/// Every scan blocks its caller and may run on any thread. Models come in the order in which the system
/// lists the folders.
class LocalModelScanner {
public:
    using Log = std::function<void(std::string)>;
    using StopRequest = std::function<bool()>;

    /// `homeDirectory` is absolute; with an empty one nothing is found. `log` receives one line for each
    /// store that exists, on the calling thread. `shouldStop` is asked before each folder, on several threads
    /// at once; from its first "yes" on the scans end early, and what they return is incomplete.
    LocalModelScanner(std::string homeDirectory, Log log, StopRequest shouldStop = {});

    /// One model per manifest in the "library" namespace of the default registry.
    [[nodiscard]] std::vector<LocalModel> scanOllamaModels() const;

    /// One model per "models--" folder of the hub cache, which vLLM uses too.
    [[nodiscard]] std::vector<LocalModel> scanHuggingFaceModels() const;

    /// One model per GGUF file in LM Studio's two model folders.
    [[nodiscard]] std::vector<LocalModel> scanLMStudioModels() const;

    /// One model per GGUF file at any depth below `folder`, named by its path relative to `rootFolder`.
    /// Symbolic links are neither followed nor listed.
    [[nodiscard]] std::vector<LocalModel> scanGGUFRecursively(const std::string& folder,
                                                              const std::string& rootFolder) const;

    /// Logical size in bytes of everything below a folder: its subfolders are counted, the folder itself and
    /// symbolic links are not. 0 for a missing or empty folder.
    [[nodiscard]] std::int64_t getFolderSize(const std::string& atPath) const;

private:
    /// Whether the store's folder exists; logs `message` if so.
    [[nodiscard]] bool beginStore(const std::string& root, std::string_view message) const;
    [[nodiscard]] bool stopRequested() const;

    std::string homeDirectory_;
    Log log_;
    StopRequest shouldStop_;
};

} // namespace zentrill
