#pragma once

#include "docker/DockerImage.h"
#include "docker/DockerImageRemovalResult.h"
#include "process/CommandExecuting.h"

#include <memory>
#include <string>

namespace zentrill {

/// Removes one image by its exact ID, never by a tag and never by force, through the endpoint that listed it,
/// and only if the scan has shown that no container uses it.
class DockerImageRemovalService final {
public:
    explicit DockerImageRemovalService(std::shared_ptr<CommandExecuting> commands);

    /// Blocks for as long as the tool takes. `executablePath` is the `docker` tool as it is located now.
    [[nodiscard]] DockerImageRemovalResult remove(const DockerImage& image,
                                                  const std::string& executablePath) const;

private:
    std::shared_ptr<CommandExecuting> commands_;
};

} // namespace zentrill
