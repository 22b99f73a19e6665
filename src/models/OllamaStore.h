#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace zentrill {

/// Ollama's default registry host. Its manifest store has one folder per registry, named after the host.
inline constexpr std::string_view ollamaRegistryHost = "registry.ollama.ai";

/// The folder in which Ollama keeps its models: "manifests/HOST/NAMESPACE/MODEL/TAG", and "blobs" with what
/// the manifests name. It only reads; what cannot be read counts as missing.
class OllamaStore {
public:
    /// The store that holds the manifest at `manifestPath`, whose last five parts are those above.
    explicit OllamaStore(const std::string& manifestPath);

    /// The paths of the blobs that the manifest names, each once: the config, then the layers. Digests that
    /// Ollama would not accept are left out.
    [[nodiscard]] std::vector<std::string> blobs() const;

    /// For each of `blobs` that other manifests name as well, the names of their models as Ollama shows them,
    /// in byte order. `shouldStop` is asked before each manifest is read; after its first "yes" the answer is
    /// incomplete.
    [[nodiscard]] std::map<std::string, std::vector<std::string>>
    otherModelsWith(const std::vector<std::string>& blobs, const std::function<bool()>& shouldStop) const;

private:
    [[nodiscard]] std::vector<std::string> blobsOf(const std::string& manifestPath) const;

    std::string manifestPath_;
    std::string path_;
};

} // namespace zentrill
