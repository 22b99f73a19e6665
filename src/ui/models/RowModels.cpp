#include "ui/models/RowModels.h"

#include "controller/DisplayText.h"
#include "ui/models/Overloaded.h"

namespace zentrill {

namespace {

/// The view of the pane that shows the line.
QString dockerRowView(const DockerRow& row) {
    return std::visit(Overloaded{
                          [](const DockerHeading&) { return QStringLiteral("heading"); },
                          [](const DockerRemark& remark) {
                              switch (remark.kind) {
                              case DockerRemark::Kind::notice:
                                  return QStringLiteral("notice");
                              case DockerRemark::Kind::warning:
                                  return QStringLiteral("warning");
                              case DockerRemark::Kind::noContainers:
                              case DockerRemark::Kind::noImages:
                                  break;
                              }
                              return QStringLiteral("empty");
                          },
                          [](const DockerContainer&) { return QStringLiteral("container"); },
                          [](const DockerImage&) { return QStringLiteral("image"); },
                      },
                      row);
}

QString dockerRowName(const DockerRow& row) {
    return std::visit(Overloaded{
                          [](const DockerHeading& heading) { return heading.text(); },
                          [](const DockerRemark& remark) { return remark.text; },
                          [](const DockerContainer& container) { return displayName(container.name); },
                          [](const DockerImage& image) { return displayName(image.displayName()); },
                      },
                      row);
}

/// What follows the name: a container's image, the short ID of an image.
QString dockerRowDetail(const DockerRow& row) {
    return std::visit(Overloaded{
                          [](const DockerContainer& container) { return displayName(container.image); },
                          [](const DockerImage& image) { return displayName(image.shortID()); },
                          [](const auto&) { return QString(); },
                      },
                      row);
}

/// A container's status, the size of an image.
QString dockerRowStatus(const DockerRow& row) {
    return std::visit(Overloaded{
                          [](const DockerContainer& container) { return displayName(container.status); },
                          [](const DockerImage& image) { return displayName(image.size); },
                          [](const auto&) { return QString(); },
                      },
                      row);
}

QString dockerUsageText(const DockerRow& row) {
    const auto* const image = std::get_if<DockerImage>(&row);
    if (image == nullptr) {
        return {};
    }
    switch (image->usage) {
    case DockerImageUsage::unused:
        return QStringLiteral("Not used by a container");
    case DockerImageUsage::inUse:
        return QStringLiteral("In use");
    case DockerImageUsage::unknown:
        break;
    }
    return QStringLiteral("Usage unknown");
}

/// Whether a container runs, or one uses the image.
bool isDockerRowInUse(const DockerRow& row) {
    return std::visit(Overloaded{
                          [](const DockerContainer& container) { return container.isRunning(); },
                          [](const DockerImage& image) { return image.usage == DockerImageUsage::inUse; },
                          [](const auto&) { return false; },
                      },
                      row);
}

} // namespace

QString applicationStatusText(const AppInfo& application) {
    if (application.hasResidualData) {
        return QStringLiteral("Data remains");
    }
    return application.isDetected ? QStringLiteral("Installed") : QStringLiteral("Not found");
}

QString applicationMarkIcon(const AppInfo& application) {
    if (application.isSelected) {
        return QStringLiteral("checkmark.square.fill");
    }
    return application.isDetected ? QStringLiteral("square") : QStringLiteral("minus.square");
}

QString applicationOrigin(const AppInfo& application) {
    QString category = displayName(rawValue(application.category));
    if (!application.installedVia) {
        return category;
    }
    return category + QStringLiteral("  ·  via ") + displayName(*application.installedVia);
}

std::unique_ptr<ApplicationListModel> makeApplicationListModel() {
    return std::make_unique<ApplicationListModel>(
        [](const AppInfo& app) { return app.name; },
        std::vector<ApplicationListModel::Role>{
            {"displayName", [](const AppInfo& app) { return displayName(app.displayName); }},
            {"description", [](const AppInfo& app) { return displayName(app.description); }},
            {"iconName", [](const AppInfo& app) { return displayName(app.iconName); }},
            {"origin", applicationOrigin},
            {"statusText", applicationStatusText},
            {"markIcon", applicationMarkIcon},
            {"isDetected", [](const AppInfo& app) { return app.isDetected; }},
            {"hasResidualData", [](const AppInfo& app) { return app.hasResidualData; }},
            {"isSelected", [](const AppInfo& app) { return app.isSelected; }},
        });
}

std::unique_ptr<LocalModelListModel> makeLocalModelListModel() {
    return std::make_unique<LocalModelListModel>(
        &LocalModel::id,
        std::vector<LocalModelListModel::Role>{
            {"name", [](const LocalModel& model) { return displayName(model.name); }},
            {"source", [](const LocalModel& model) { return displayName(model.source); }},
            {"sizeText", [](const LocalModel& model) { return displayName(model.sizeFormatted()); }},
        });
}

std::unique_ptr<DockerListModel> makeDockerListModel() {
    return std::make_unique<DockerListModel>(dockerRowKey, std::vector<DockerListModel::Role>{
                                                               {"view", dockerRowView},
                                                               {"name", dockerRowName},
                                                               {"detail", dockerRowDetail},
                                                               {"status", dockerRowStatus},
                                                               {"usageText", dockerUsageText},
                                                               {"inUse", isDockerRowInUse},
                                                           });
}

} // namespace zentrill
