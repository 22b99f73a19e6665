#pragma once

#include <QKeySequence>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <optional>
#include <vector>

QT_BEGIN_NAMESPACE
class QKeyEvent;
QT_END_NAMESPACE

namespace zentrill {

/// What a shortcut of the window does. None confirms or removes anything.
enum class ShortcutAction {
    scan,
    showApplications,
    showModels,
    showDocker,
    showConsole,
    toggleAllApplications,
    find,
    findNext,
    findPrevious,
    showShortcuts,
    close,
};

/// One action with its keys; tooltips name the first.
struct Shortcut {
    ShortcutAction action;
    QList<QKeySequence> keys;
    QString purpose;
};

/// All shortcuts of the window: what the keys do, what the tooltips teach and what `?` lists.
class Shortcuts : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString scanKeys READ scanKeys CONSTANT FINAL)
    Q_PROPERTY(QString findKeys READ findKeys CONSTANT FINAL)
    Q_PROPERTY(QString findNextKeys READ findNextKeys CONSTANT FINAL)
    Q_PROPERTY(QString findPreviousKeys READ findPreviousKeys CONSTANT FINAL)
    Q_PROPERTY(QString leaveKeys READ leaveKeys CONSTANT FINAL)
    Q_PROPERTY(QStringList keyTexts READ keyTexts CONSTANT FINAL)
    Q_PROPERTY(QStringList purposes READ purposes CONSTANT FINAL)

public:
    using QObject::QObject;

    /// In the order in which they are listed.
    [[nodiscard]] static const std::vector<Shortcut>& all();

    /// What the press asks for, if anything. The number pad counts like the other keys, and "?" may need
    /// Shift.
    [[nodiscard]] static std::optional<ShortcutAction> actionOf(const QKeyEvent& press);

    /// The first key of the action as the platform writes it: "F5", "Ctrl+1".
    [[nodiscard]] static QString keysOf(ShortcutAction action);

    [[nodiscard]] static QString scanKeys() { return keysOf(ShortcutAction::scan); }

    [[nodiscard]] static QString findKeys() { return keysOf(ShortcutAction::find); }

    [[nodiscard]] static QString findNextKeys() { return keysOf(ShortcutAction::findNext); }

    [[nodiscard]] static QString findPreviousKeys() { return keysOf(ShortcutAction::findPrevious); }

    /// The keys that leave a search field.
    [[nodiscard]] static QString leaveKeys();

    /// The key that shows the pane of that row in the sidebar, from 0.
    Q_INVOKABLE [[nodiscard]] static QString paneKeys(int row);

    /// The list of all shortcuts and of the keys that lists handle themselves: keys and purposes, line by
    /// line.
    [[nodiscard]] static QStringList keyTexts();
    [[nodiscard]] static QStringList purposes();
};

} // namespace zentrill
