#include "catalog/ApplicationDetectionRule.h"

#include <algorithm>
#include <iterator>

namespace zentrill {

std::vector<std::string> ApplicationDetectionRule::scanResidualDataPaths() const {
    std::vector<std::string> paths = residualDataPaths;
    std::ranges::copy_if(uninstallPaths, std::back_inserter(paths), [this](const std::string& path) {
        return std::ranges::find(installedPaths, path) == installedPaths.end();
    });
    return paths;
}

} // namespace zentrill
