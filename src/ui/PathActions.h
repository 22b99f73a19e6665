#pragma once

#include "controller/UninstallerViewModel.h"
#include "ui/FileManager.h"

#include <QByteArray>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace zentrill {

/// What the menus and Ctrl+C do with a path or a name. It changes nothing on disk.
class PathActions : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by ContentViewState")
    /// Whether there is a file manager to show a path, as far as `look` has found out.
    Q_PROPERTY(bool canShow READ canShow NOTIFY canShowChanged FINAL)

public:
    /// `controller` outlives this object.
    explicit PathActions(UninstallerViewModel& controller, QObject* parent = nullptr);

    [[nodiscard]] bool canShow() const { return fileManager_.isThere(); }

    Q_INVOKABLE void look() { fileManager_.look(); }

    /// Copies the bytes to the clipboard; without any the clipboard stays as it is.
    Q_INVOKABLE static void copy(const QByteArray& path);

    /// The same for text.
    Q_INVOKABLE static void copyText(const QString& text) { copy(text.toUtf8()); }

    /// Asks the file manager to show the item in its folder. A failure is a line of the log.
    Q_INVOKABLE void showInFolder(const QByteArray& path) { fileManager_.show(path.toStdString()); }

Q_SIGNALS:
    void canShowChanged();

private:
    FileManager fileManager_;
};

} // namespace zentrill
