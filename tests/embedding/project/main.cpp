// Uses something of each library, and changes nothing.

#include "catalog/ApplicationDetectionRegistry.h"
#include "deletion/SafeDeletionEngine.h"
#include "docker/DockerListing.h"
#include "models/FolderSize.h"
#include "platform/ByteCountFormatter.h"
#include "process/Environment.h"

#include <cstdio>
#include <string>

int main(int argc, char* argv[]) {
    using namespace zentrill;
    const std::string folder = argc > 1 ? argv[1] : ".";
    const auto plan = SafeDeletionEngine().plan(folder, {});
    std::printf("%zu tools, %zu variables, %zu containers, %llu items of %lld bytes\n",
                ApplicationDetectionRegistry::rules().size(), currentEnvironment().size(),
                docker_listing::containers("", {}).records.size(),
                static_cast<unsigned long long>(plan.removed.count),
                static_cast<long long>(folderSize(folder)));
}
