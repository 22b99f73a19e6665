#include "catalog/AppInfo.h"

#include "platform/HashCombiner.h"

std::size_t std::hash<zentrill::AppInfo>::operator()(const zentrill::AppInfo& app) const {
    return zentrill::HashCombiner()
        .add(app.name)
        .add(app.displayName)
        .add(app.description)
        .add(zentrill::rawValue(app.category))
        .add(app.iconName)
        .add(app.installedVia)
        .add(app.detectPaths)
        .add(app.uninstallPaths)
        .add(app.credentialPaths)
        .add(app.residualDataPaths)
        .add(app.isDetected)
        .add(app.hasResidualData)
        .add(app.isSelected)
        .value();
}
