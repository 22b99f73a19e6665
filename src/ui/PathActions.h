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
    /// Whether there is a file manager to show a path in, as far as `look` has found.
    Q_PROPERTY(bool canShow READ canShow NOTIFY canShowChanged FINAL)

public:
    /// `controller` outlives this object.
    explicit PathActions(UninstallerViewModel& controller, QObject* parent = nullptr);

    [[nodiscard]] bool canShow() const { return fileManager_.isThere(); }

    Q_INVOKABLE void look() { fileManager_.look(); }

    /// Puts the bytes on the clipboard; without any it stays as it is.
    Q_INVOKABLE static void copy(const QByteArray& path);

    /// What is text already.
    Q_INVOKABLE static void copyText(const QString& text) { copy(text.toUtf8()); }

    /// Has the file manager show the item in its folder. What goes wrong is a line of the log.
    Q_INVOKABLE void showInFolder(const QByteArray& path) { fileManager_.show(path.toStdString()); }

Q_SIGNALS:
    void canShowChanged();

private:
    FileManager fileManager_;
};

} // namespace zentrill
