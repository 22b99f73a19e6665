#pragma once

#include "catalog/AppInfo.h"
#include "docker/DockerAvailability.h"
#include "models/LocalModel.h"

#include <vector>

namespace zentrill {

/// Everything that one scan found.
struct ScanSnapshot {
    /// The list that the scan was given, with `isDetected` and `hasResidualData` as they are now.
    std::vector<AppInfo> apps;
    /// Ollama's, then HuggingFace's, then LM Studio's.
    std::vector<LocalModel> models;
    DockerAvailability docker;

    bool operator==(const ScanSnapshot&) const = default;
};

} // namespace zentrill
