#include "ui/PathActions.h"

#include "ui/PathData.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <string>

namespace zentrill {

PathActions::PathActions(UninstallerViewModel& controller, QObject* parent) : QObject(parent) {
    connect(&fileManager_, &FileManager::isThereChanged, this, &PathActions::canShowChanged);
    connect(&fileManager_, &FileManager::failed, &controller,
            [&controller](const std::string& path, const QString& reason) {
                controller.log("The file manager could not show " + path + ": " + reason.toStdString());
            });
}

void PathActions::copy(const QByteArray& path) {
    if (!path.isEmpty()) {
        QGuiApplication::clipboard()->setMimeData(pathData(path.toStdString()).release());
    }
}

} // namespace zentrill
