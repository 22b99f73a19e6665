#include "docker/DockerExecutableLocator.h"

#include <utility>

namespace zentrill {

DockerExecutableLocator::DockerExecutableLocator(const FileSystem& fileManager,
                                                 const std::string& homeDirectory,
                                                 const std::vector<std::string>& additionalCandidatePaths)
    : fileManager_(&fileManager), candidatePaths_{"/usr/local/bin/docker", "/opt/homebrew/bin/docker"} {
    if (!homeDirectory.empty()) {
        candidatePaths_.push_back(homeDirectory + "/.local/bin/docker");
        candidatePaths_.push_back(homeDirectory + "/.docker/bin/docker");
    }
    candidatePaths_.emplace_back("/Applications/Docker.app/Contents/Resources/bin/docker");
    candidatePaths_.insert(candidatePaths_.end(), additionalCandidatePaths.begin(),
                           additionalCandidatePaths.end());
}

std::optional<std::string> DockerExecutableLocator::locate() const {
    for (const std::string& candidate : candidatePaths_) {
        if (!fileManager_->isExecutableFile(candidate)) {
            continue;
        }
        std::optional<std::string> resolved = fileManager_->resolvingSymlinks(candidate);
        if (resolved && fileManager_->isExecutableFile(*resolved)) {
            return resolved;
        }
    }
    return std::nullopt;
}

} // namespace zentrill
