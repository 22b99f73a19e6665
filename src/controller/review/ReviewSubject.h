#pragma once

#include "catalog/AppInfo.h"
#include "docker/DockerContainer.h"
#include "docker/DockerImage.h"
#include "models/LocalModel.h"

#include <variant>
#include <vector>

namespace zentrill {

/// What a person wants to look at before it is removed: tools, which go one after the other, or one record.
using ReviewSubject = std::variant<std::vector<AppInfo>, LocalModel, DockerContainer, DockerImage>;

} // namespace zentrill
