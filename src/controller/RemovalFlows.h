#pragma once

#include "controller/OperationContext.h"
#include "controller/ResultAlert.h"
#include "docker/DockerContainer.h"
#include "docker/DockerImage.h"
#include "models/LocalModel.h"

/// The bodies of the operations on one model, container or image. Each logs the message that it gives back
/// and runs on the worker.
namespace zentrill {

[[nodiscard]] ResultAlert deleteModel(const OperationContext& context, const LocalModel& model);

[[nodiscard]] ResultAlert stopContainer(const OperationContext& context, const DockerContainer& container);

/// A running container is stopped first; one that cannot be stopped stays.
[[nodiscard]] ResultAlert removeContainer(const OperationContext& context, const DockerContainer& container);

[[nodiscard]] ResultAlert removeDockerImage(const OperationContext& context, const DockerImage& image);

} // namespace zentrill
