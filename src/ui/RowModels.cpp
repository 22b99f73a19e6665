#include "ui/RowModels.h"

#include "controller/DisplayText.h"

namespace zentrill {

namespace {

QString kindName(DockerRow::Kind kind) {
    switch (kind) {
    case DockerRow::Kind::heading:
        return QStringLiteral("heading");
    case DockerRow::Kind::notice:
        return QStringLiteral("notice");
    case DockerRow::Kind::warning:
        return QStringLiteral("warning");
    case DockerRow::Kind::empty:
        return QStringLiteral("empty");
    case DockerRow::Kind::container:
        return QStringLiteral("container");
    case DockerRow::Kind::image:
        break;
    }
    return QStringLiteral("image");
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
    return std::make_unique<DockerListModel>(
        &DockerRow::id, std::vector<DockerListModel::Role>{
                            {"kind", [](const DockerRow& row) { return kindName(row.kind); }},
                            {"recordId", [](const DockerRow& row) { return displayName(row.recordID); }},
                            {"name", [](const DockerRow& row) { return displayName(row.text); }},
                            {"detail", [](const DockerRow& row) { return displayName(row.detail); }},
                            {"status", [](const DockerRow& row) { return displayName(row.status); }},
                            {"usageText", [](const DockerRow& row) { return displayName(row.usage); }},
                            {"active_", [](const DockerRow& row) { return row.isActive; }},
                        });
}

} // namespace zentrill
