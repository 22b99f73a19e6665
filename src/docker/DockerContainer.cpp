#include "docker/DockerContainer.h"

namespace zentrill {

bool DockerContainer::isRunning() const noexcept {
    return status.find("Up") != std::string::npos || status.find("running") != std::string::npos;
}

} // namespace zentrill
