#pragma once

#include "docker/DockerAvailability.h"
#include "docker/DockerExecutableLocating.h"
#include "docker/DockerExecutableLocator.h"
#include "process/CommandExecuting.h"
#include "process/Environment.h"
#include "process/ShellCommandRunner.h"

#include <memory>

namespace zentrill {

/// Takes the inventory of one Docker endpoint through the `docker` tool: containers, images, and which images
/// are in use. Any doubt about the use of one image makes the use of every image unknown, which forbids their
/// removal, and a warning says so.
class DockerScanner final {
public:
    /// `environment` is where DOCKER_CONTEXT and DOCKER_HOST are looked up.
    explicit DockerScanner(
        std::shared_ptr<CommandExecuting> commands = std::make_shared<ShellCommandRunner>(),
        std::shared_ptr<const DockerExecutableLocating> locator = std::make_shared<DockerExecutableLocator>(),
        Environment environment = currentEnvironment());

    /// Blocks for as long as the tool takes. Failures are part of the result.
    [[nodiscard]] DockerAvailability scan() const;

private:
    std::shared_ptr<CommandExecuting> commands_;
    std::shared_ptr<const DockerExecutableLocating> locator_;
    Environment environment_;
};

} // namespace zentrill
