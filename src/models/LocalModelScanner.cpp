#include "models/LocalModelScanner.h"

#include "models/FolderSize.h"
#include "models/OllamaManifestSizer.h"
#include "models/OllamaStore.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "platform/TreeVisit.h"

#include <array>
#include <iterator>
#include <optional>
#include <utility>

namespace zentrill {

namespace {

constexpr std::string_view ollamaManifests = "~/.ollama/models/manifests/";
constexpr std::string_view ollamaNamespace = "/library";
constexpr std::string_view huggingFaceHub = "~/.cache/huggingface/hub";
constexpr std::array<std::string_view, 2> lmStudioRoots = {"~/.cache/lm-studio/models", "~/.lmstudio/models"};
constexpr std::string_view hubModelPrefix = "models--";
constexpr std::string_view ggufSuffix = ".gguf";

/// `text` with every occurrence of `pattern`, found from left to right, replaced.
std::string replacingAll(std::string_view text, std::string_view pattern, std::string_view replacement) {
    std::string result;
    result.reserve(text.size());
    std::size_t begin = 0;
    for (std::size_t found = text.find(pattern); found != std::string_view::npos;
         found = text.find(pattern, begin)) {
        result.append(text.substr(begin, found - begin)).append(replacement);
        begin = found + pattern.size();
    }
    return result.append(text.substr(begin));
}

std::string childPath(std::string_view folder, std::string_view name) {
    return std::string(folder).append("/").append(name);
}

std::int64_t sizeOfEntry(const DirectoryHandle& folder, const char* name) {
    EntryStatus status;
    return folder.lookUp(name, status) == 0 ? status.size : 0;
}

} // namespace

LocalModelScanner::LocalModelScanner(std::string homeDirectory, Log log, StopRequest shouldStop)
    : homeDirectory_(std::move(homeDirectory)), log_(std::move(log)), shouldStop_(std::move(shouldStop)) {}

std::vector<LocalModel> LocalModelScanner::scanOllamaModels() const {
    const FileSystem& fileManager = FileSystem::shared();
    const std::string root = paths::expandingTilde(
        std::string(ollamaManifests).append(ollamaRegistryHost).append(ollamaNamespace), homeDirectory_);
    if (!beginStore(root, "Scanning Ollama models...")) {
        return {};
    }
    std::vector<LocalModel> models;
    for (const std::string& model : fileManager.entryNames(root).value_or(std::vector<std::string>())) {
        if (stopRequested()) {
            break;
        }
        const std::string folder = childPath(root, model);
        for (const std::string& tag : fileManager.entryNames(folder).value_or(std::vector<std::string>())) {
            std::string manifest = childPath(folder, tag);
            const std::int64_t size = OllamaManifestSizer::size(manifest).value_or(0);
            models.push_back({.name = std::string(model).append(":").append(tag),
                              .source = std::string(ollamaSource),
                              .sizeBytes = size,
                              .path = std::move(manifest)});
        }
    }
    return models;
}

std::vector<LocalModel> LocalModelScanner::scanHuggingFaceModels() const {
    const std::string root = paths::expandingTilde(huggingFaceHub, homeDirectory_);
    if (!beginStore(root, "Scanning HuggingFace models...")) {
        return {};
    }
    std::vector<LocalModel> models;
    std::vector<std::string> folders;
    for (const std::string& entry :
         FileSystem::shared().entryNames(root).value_or(std::vector<std::string>())) {
        if (!entry.starts_with(hubModelPrefix)) {
            continue;
        }
        folders.push_back(childPath(root, entry));
        models.push_back({.name = replacingAll(replacingAll(entry, hubModelPrefix, ""), "--", "/"),
                          .source = std::string(huggingFaceSource),
                          .path = folders.back()});
    }
    const std::vector<std::int64_t> sizes = folderSizes(folders, shouldStop_);
    for (std::size_t index = 0; index < models.size(); ++index) {
        models[index].sizeBytes = sizes[index];
    }
    return models;
}

std::vector<LocalModel> LocalModelScanner::scanLMStudioModels() const {
    std::vector<LocalModel> models;
    for (const std::string_view store : lmStudioRoots) {
        const std::string root = paths::expandingTilde(store, homeDirectory_);
        if (!beginStore(root, "Scanning LM Studio models...")) {
            continue;
        }
        std::vector<LocalModel> found = scanGGUFRecursively(root, root);
        models.insert(models.end(), std::make_move_iterator(found.begin()),
                      std::make_move_iterator(found.end()));
    }
    return models;
}

std::vector<LocalModel> LocalModelScanner::scanGGUFRecursively(const std::string& folder,
                                                               const std::string& rootFolder) const {
    std::vector<LocalModel> models;
    const std::string rootPrefix = rootFolder + '/';
    visitTree(
        folder,
        [&](const DirectoryStack& stack, const DirectoryStack::Entry& entry) {
            if (entry.kind == EntryKind::directory || !std::string_view(entry.name).ends_with(ggufSuffix)) {
                return;
            }
            const std::string_view below = stack.relativePath();
            std::string path = childPath(below.empty() ? folder : childPath(folder, below), entry.name);
            models.push_back({.name = replacingAll(path, rootPrefix, ""),
                              .source = std::string(lmStudioSource),
                              .sizeBytes = sizeOfEntry(stack.directory(), entry.name),
                              .path = std::move(path)});
        },
        shouldStop_);
    return models;
}

std::int64_t LocalModelScanner::getFolderSize(const std::string& atPath) const {
    return folderSize(atPath, shouldStop_);
}

bool LocalModelScanner::beginStore(const std::string& root, std::string_view message) const {
    if (homeDirectory_.empty() || stopRequested() || !FileSystem::shared().fileExists(root)) {
        return false;
    }
    if (log_) {
        log_(std::string(message));
    }
    return true;
}

bool LocalModelScanner::stopRequested() const {
    return shouldStop_ && shouldStop_();
}

} // namespace zentrill
