#include "ui/Shortcuts.h"

#include <QKeyEvent>

#include <algorithm>
#include <array>

namespace zentrill {

namespace {

constexpr std::array paneActions{ShortcutAction::showApplications, ShortcutAction::showModels,
                                 ShortcutAction::showDocker, ShortcutAction::showConsole};

/// The platform's keys for it, and those that work everywhere.
QList<QKeySequence> keys(QKeySequence::StandardKey standard, const QList<QKeySequence>& everywhere) {
    QList<QKeySequence> found = QKeySequence::keyBindings(standard);
    for (const QKeySequence& key : everywhere) {
        if (!found.contains(key)) {
            found.append(key);
        }
    }
    return found;
}

QKeySequence control(Qt::Key key) {
    return {QKeyCombination(Qt::ControlModifier, key)};
}

std::vector<Shortcut> makeShortcuts() {
    using Action = ShortcutAction;
    return {
        {Action::scan, keys(QKeySequence::Refresh, {{Qt::Key_F5}, control(Qt::Key_R)}),
         QStringLiteral("Scan the system")},
        {Action::showApplications, {control(Qt::Key_1)}, QStringLiteral("Show the applications")},
        {Action::showModels, {control(Qt::Key_2)}, QStringLiteral("Show the local models")},
        {Action::showDocker, {control(Qt::Key_3)}, QStringLiteral("Show Docker")},
        {Action::showConsole, {control(Qt::Key_4)}, QStringLiteral("Show the activity console")},
        {Action::toggleAllApplications, keys(QKeySequence::SelectAll, {}),
         QStringLiteral("Select all tools that were found, or none")},
        {Action::find, keys(QKeySequence::Find, {control(Qt::Key_F)}),
         QStringLiteral("Search the list that is shown")},
        {Action::findNext, keys(QKeySequence::FindNext, {{Qt::Key_F3}, control(Qt::Key_G)}),
         QStringLiteral("Next line found in the console")},
        {Action::findPrevious,
         keys(QKeySequence::FindPrevious,
              {QKeySequence(Qt::ShiftModifier | Qt::Key_F3),
               QKeySequence(Qt::ControlModifier | Qt::ShiftModifier | Qt::Key_G)}),
         QStringLiteral("Line found before it")},
        {Action::showShortcuts, keys(QKeySequence::HelpContents, {{Qt::Key_Question}}),
         QStringLiteral("Show or hide this list")},
        {Action::close,
         keys(QKeySequence::Close, keys(QKeySequence::Quit, {control(Qt::Key_W), control(Qt::Key_Q)})),
         QStringLiteral("Close the window")},
    };
}

QString text(const QList<QKeySequence>& keys) {
    QStringList texts;
    for (const QKeySequence& key : keys) {
        texts.append(key.toString(QKeySequence::NativeText));
    }
    return texts.join(QStringLiteral(", "));
}

struct ListKeys {
    QList<QKeySequence> keys;
    QString purpose;
};

/// The keys that lists and texts handle themselves.
std::vector<ListKeys> listKeys() {
    return {
        {{{Qt::Key_Home}, {Qt::Key_End}}, QStringLiteral("Go to the first or the last row of a list")},
        {{{Qt::Key_PageUp}, {Qt::Key_PageDown}}, QStringLiteral("Go a page up or down in a list")},
        {QKeySequence::keyBindings(QKeySequence::Copy).mid(0, 1),
         QStringLiteral("Copy a row's path or name, or the selected lines")},
    };
}

} // namespace

const std::vector<Shortcut>& Shortcuts::all() {
    static const std::vector<Shortcut> shortcuts = makeShortcuts();
    return shortcuts;
}

std::optional<ShortcutAction> Shortcuts::actionOf(const QKeyEvent& press) {
    Qt::KeyboardModifiers modifiers = press.modifiers() & ~(Qt::KeypadModifier | Qt::GroupSwitchModifier);
    if (press.key() == Qt::Key_Question) {
        modifiers &= ~Qt::ShiftModifier;
    }
    const QKeySequence pressed(QKeyCombination(modifiers, static_cast<Qt::Key>(press.key())));
    const auto found = std::ranges::find_if(
        all(), [&](const Shortcut& shortcut) { return shortcut.keys.contains(pressed); });
    return found == all().end() ? std::nullopt : std::optional(found->action);
}

QString Shortcuts::keysOf(ShortcutAction action) {
    const auto found = std::ranges::find(all(), action, &Shortcut::action);
    return found->keys.front().toString(QKeySequence::NativeText);
}

QString Shortcuts::leaveKeys() {
    return QKeySequence(Qt::Key_Escape).toString(QKeySequence::NativeText);
}

QString Shortcuts::paneKeys(int row) {
    const auto place = static_cast<std::size_t>(row);
    return row >= 0 && place < paneActions.size() ? keysOf(paneActions.at(place)) : QString();
}

QStringList Shortcuts::keyTexts() {
    QStringList texts;
    for (const Shortcut& shortcut : all()) {
        texts.append(text(shortcut.keys));
    }
    for (const ListKeys& line : listKeys()) {
        texts.append(text(line.keys));
    }
    return texts;
}

QStringList Shortcuts::purposes() {
    QStringList texts;
    for (const Shortcut& shortcut : all()) {
        texts.append(shortcut.purpose);
    }
    for (const ListKeys& line : listKeys()) {
        texts.append(line.purpose);
    }
    return texts;
}

} // namespace zentrill
