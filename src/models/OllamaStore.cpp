#include "models/OllamaStore.h"

#include "models/OllamaManifestFile.h"
#include "models/OllamaManifestReader.h"
#include "platform/Paths.h"
#include "platform/TreeVisit.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace zentrill {

namespace {

constexpr std::string_view library = "library";
/// HOST, NAMESPACE, MODEL, TAG.
constexpr std::size_t manifestParts = 4;

/// The name of the file for a digest, "sha256:" and 64 hexadecimal digits; nothing for any other text, which
/// could lead anywhere.
std::optional<std::string> blobName(std::string_view digest) {
    constexpr std::string_view algorithm = "sha256";
    constexpr std::size_t digits = 64;
    const std::string_view hash = digest.substr(std::min(digest.size(), algorithm.size() + 1));
    const bool separated = digest.size() == algorithm.size() + 1 + digits && digest.starts_with(algorithm) &&
                           (digest[algorithm.size()] == ':' || digest[algorithm.size()] == '-');
    if (!separated || hash.find_first_not_of("0123456789abcdefABCDEF") != std::string_view::npos) {
        return std::nullopt;
    }
    return std::string(algorithm).append("-").append(hash);
}

/// The model of the manifest that lies at `relativePath` below the folder of all manifests; Ollama leaves out
/// what is the same for most.
std::string modelName(std::string_view relativePath) {
    const std::vector<std::string_view> parts = paths::components(relativePath);
    std::string name;
    if (parts[0] != ollamaRegistryHost) {
        name.append(parts[0]).append("/");
    }
    if (parts[0] != ollamaRegistryHost || parts[1] != library) {
        name.append(parts[1]).append("/");
    }
    return name.append(parts[2]).append(":").append(parts[3]);
}

} // namespace

OllamaStore::OllamaStore(const std::string& manifestPath)
    : manifestPath_(paths::standardized(manifestPath)), path_(manifestPath_) {
    for (std::size_t i = 0; i < manifestParts + 1; ++i) {
        path_ = std::string(paths::parent(path_));
    }
}

std::vector<std::string> OllamaStore::blobs() const {
    return blobsOf(manifestPath_);
}

std::vector<std::string> OllamaStore::blobsOf(const std::string& manifestPath) const {
    std::vector<std::string> blobs;
    const std::optional<std::string> text = ollamaManifestText(manifestPath);
    std::optional<OllamaManifest> manifest = text ? readOllamaManifest(*text) : std::nullopt;
    if (!manifest) {
        return blobs;
    }
    manifest->layers.insert(manifest->layers.begin(), std::move(manifest->config));
    for (const OllamaBlob& blob : manifest->layers) {
        const std::optional<std::string> name = blobName(blob.digest);
        if (std::string path = name ? path_ + "/blobs/" + *name : std::string();
            name && std::ranges::find(blobs, path) == blobs.end()) {
            blobs.push_back(std::move(path));
        }
    }
    return blobs;
}

std::map<std::string, std::vector<std::string>>
OllamaStore::otherModelsWith(const std::vector<std::string>& blobs,
                             const std::function<bool()>& shouldStop) const {
    std::map<std::string, std::vector<std::string>> models;
    const std::string manifests = path_ + "/manifests";
    bool stopped = false;
    const auto visit = [&](const DirectoryStack& stack, const DirectoryStack::Entry& entry) {
        stopped = stopped || (shouldStop && shouldStop());
        if (stopped || entry.kind == EntryKind::directory || stack.depth() != manifestParts) {
            return;
        }
        const std::string relativePath = paths::appending(stack.relativePath(), entry.name);
        const std::string path = paths::appending(manifests, relativePath);
        if (path == manifestPath_) {
            return;
        }
        for (std::string& blob : blobsOf(path)) {
            if (std::ranges::find(blobs, blob) != blobs.end()) {
                models[std::move(blob)].push_back(modelName(relativePath));
            }
        }
    };
    visitTree(manifests, visit, [&stopped] { return stopped; });
    for (auto& [blob, names] : models) {
        std::ranges::sort(names);
    }
    return models;
}

} // namespace zentrill
