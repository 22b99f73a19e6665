#include "ui/SelectionSizeState.h"

#include "controller/sizes/SizeTexts.h"

#include <utility>

namespace zentrill {

SelectionSizeState::SelectionSizeState(UninstallerViewModel& controller, QObject* parent)
    : QObject(parent), controller_(controller) {
    using Controller = UninstallerViewModel;
    connect(&controller_, &Controller::appsChanged, this, &SelectionSizeState::update);
    connect(&controller_, &Controller::preserveCredentialsChanged, this, &SelectionSizeState::update);
    connect(&controller_, &Controller::isBusyChanged, this, &SelectionSizeState::update);
}

void SelectionSizeState::update() {
    std::vector<AppInfo> selected;
    std::vector<std::string> names;
    for (const AppInfo& app : controller_.apps()) {
        // An operation ends the computation, and what it leaves has another size.
        if (app.isSelected && app.isDetected && !controller_.isBusy()) {
            selected.push_back(app);
            names.push_back(app.name);
        }
    }
    const SafetyShield shield = safetyShield(controller_.preserveCredentials());
    if (names == tools_ && shield == shield_) {
        return;
    }
    tools_ = std::move(names);
    shield_ = shield;
    setText({});
    if (selected.empty()) {
        controller_.selectionSizes().cancel();
        return;
    }
    controller_.selectionSizes().start(
        std::move(selected), shield, [this](const SelectionSize& size) { setText(selectionSizeText(size)); });
}

void SelectionSizeState::setText(const QString& text) {
    if (text != text_) {
        text_ = text;
        Q_EMIT textChanged();
    }
}

} // namespace zentrill
