// What the shortcuts of the window do.

#include "ui/ContentViewState.h"

#include <algorithm>

namespace zentrill {

void ContentViewState::setShortcutsShown(bool shown) {
    if (shown == shortcutsShown_ || (shown && (modalShown() || review_.isShown()))) {
        return;
    }
    shortcutsShown_ = shown;
    Q_EMIT shortcutsShownChanged();
}

void ContentViewState::perform(ShortcutAction action) {
    if (modalShown() || (review_.isShown() && action != ShortcutAction::close)) {
        return;
    }
    setShortcutsShown(action == ShortcutAction::showShortcuts && !shortcutsShown_);
    switch (action) {
    case ShortcutAction::scan:
        if (!controller_.isScanning()) {
            controller_.scanSystem();
        }
        break;
    case ShortcutAction::showApplications:
        enterPane(0);
        break;
    case ShortcutAction::showModels:
        enterPane(1);
        break;
    case ShortcutAction::showDocker:
        enterPane(2);
        break;
    case ShortcutAction::showConsole:
        enterPane(3);
        break;
    case ShortcutAction::toggleAllApplications:
        // Only rows in sight are selected.
        if (selectedRow() == 0) {
            toggleAllApplications();
        }
        break;
    case ShortcutAction::find:
        Q_EMIT findRequested();
        break;
    case ShortcutAction::findNext:
        logSearch_.next();
        break;
    case ShortcutAction::findPrevious:
        logSearch_.previous();
        break;
    case ShortcutAction::showShortcuts:
        break;
    case ShortcutAction::close:
        Q_EMIT closeRequested();
        break;
    }
}

void ContentViewState::enterPane(int row) {
    selectRow(row);
    Q_EMIT paneEntered();
}

void ContentViewState::toggleAllApplications() {
    const std::vector<AppInfo> apps = controller_.apps();
    const bool select =
        std::ranges::any_of(apps, [](const AppInfo& app) { return app.isDetected && !app.isSelected; });
    for (const AppInfo& app : apps) {
        if (app.isDetected) {
            controller_.setAppSelected(app.name, select);
        }
    }
}

} // namespace zentrill
