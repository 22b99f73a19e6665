#include "catalog/ApplicationDetectionRule.h"

#include "platform/HashCombiner.h"

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

std::size_t std::hash<zentrill::ApplicationDetectionRule>::operator()(
    const zentrill::ApplicationDetectionRule& rule) const {
    return zentrill::HashCombiner()
        .add(rule.name)
        .add(rule.installedPaths)
        .add(rule.residualDataPaths)
        .add(rule.uninstallPaths)
        .add(rule.credentialPaths)
        .add(rule.processNames)
        .add(rule.installedVia)
        .value();
}
