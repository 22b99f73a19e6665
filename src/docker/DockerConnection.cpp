#include "docker/DockerConnection.h"

#include "platform/HashCombiner.h"

std::size_t
std::hash<zentrill::DockerConnection>::operator()(const zentrill::DockerConnection& connection) const {
    return zentrill::HashCombiner().add(connection.arguments).add(connection.displayName).value();
}
