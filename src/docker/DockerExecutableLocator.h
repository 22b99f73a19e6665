#pragma once

#include "docker/DockerExecutableLocating.h"
#include "platform/FileSystem.h"
#include "platform/HomeDirectory.h"

#include <optional>
#include <string>
#include <vector>

namespace zentrill {

/// Looks for `docker` in the places where its installers put it, because a desktop application does not
/// inherit the search path of the user's shell.
class DockerExecutableLocator final : public DockerExecutableLocating {
public:
    /// `fileManager` must outlive the locator. `homeDirectory` has no trailing slash; without one the places
    /// below it are left out. `additionalCandidatePaths` are tried last.
    explicit DockerExecutableLocator(const FileSystem& fileManager = FileSystem::shared(),
                                     const std::string& homeDirectory = zentrill::homeDirectory(),
                                     const std::vector<std::string>& additionalCandidatePaths = {});

    /// The first candidate that leads to an executable file, with every link on its way resolved.
    [[nodiscard]] std::optional<std::string> locate() const override;

private:
    const FileSystem* fileManager_;
    std::vector<std::string> candidatePaths_;
};

} // namespace zentrill
