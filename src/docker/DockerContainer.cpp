#include "docker/DockerContainer.h"

#include "platform/HashCombiner.h"

namespace zentrill {

bool DockerContainer::isRunning() const noexcept {
    return status.find("Up") != std::string::npos || status.find("running") != std::string::npos;
}

} // namespace zentrill

std::size_t
std::hash<zentrill::DockerContainer>::operator()(const zentrill::DockerContainer& container) const {
    return zentrill::HashCombiner()
        .add(container.id)
        .add(container.name)
        .add(container.image)
        .add(container.status)
        .add(container.connection)
        .value();
}
