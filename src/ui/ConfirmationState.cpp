#include "ui/ConfirmationState.h"

#include "controller/DestructiveConfirmationCode.h"
#include "controller/DisplayText.h"

#include <utility>

namespace zentrill {

namespace {

/// Starts the operation of each kind of action.
struct OperationStarter {
    UninstallerViewModel& controller;

    void operator()(const PendingConfirmation::Apps& pending) const {
        controller.uninstallAppsFromConfirmation(pending.apps, pending.preserveCredentials);
    }

    void operator()(const LocalModel& model) const { controller.deleteModel(model); }

    void operator()(const DockerContainer& container) const { controller.removeContainer(container); }

    void operator()(const DockerImage& image) const { controller.removeDockerImage(image); }

    void operator()(const PendingConfirmation::SelfUninstall& /*pending*/) const {
        controller.performSelfUninstall();
    }
};

} // namespace

ConfirmationState::ConfirmationState(UninstallerViewModel& controller, CodeSource codes, QObject* parent)
    : QObject(parent), controller_(controller), codes_(std::move(codes)) {
    if (!codes_) {
        codes_ = [] { return DestructiveConfirmationCode::generate(); };
    }
}

QString ConfirmationState::title() const {
    return pending_ ? displayName(pending_->title()) : QString();
}

QString ConfirmationState::message() const {
    return pending_ ? displayName(pending_->message()) : QString();
}

QString ConfirmationState::actionTitle() const {
    return pending_ ? displayName(pending_->actionTitle()) : QString();
}

QString ConfirmationState::confirmationCode() const {
    return QString::fromStdString(confirmationCode_);
}

void ConfirmationState::setConfirmationInput(const QString& input) {
    if (!pending_) {
        return;
    }
    const QString filtered =
        QString::fromStdString(DestructiveConfirmationCode::filteredInput(input.toStdString()));
    if (filtered == confirmationInput_) {
        return;
    }
    confirmationInput_ = filtered;
    Q_EMIT confirmationInputChanged();
}

bool ConfirmationState::matches() const {
    return pending_ &&
           DestructiveConfirmationCode::matches(confirmationInput_.toStdString(), confirmationCode_);
}

bool ConfirmationState::canPresent() const {
    return !pending_ && !controller_.isBusy() && !controller_.showResultAlert();
}

void ConfirmationState::presentConfirmation(PendingConfirmation pending) {
    if (!canPresent()) {
        return;
    }
    do {
        confirmationCode_ = codes_();
    } while (confirmationCode_ == lastConfirmationCode_);
    lastConfirmationCode_ = confirmationCode_;
    confirmationInput_.clear();
    pending_ = std::move(pending);
    Q_EMIT confirmationInputChanged();
    Q_EMIT pendingChanged();
}

void ConfirmationState::confirm() {
    if (!pending_ || !matches()) {
        return;
    }
    const PendingConfirmation confirmed = *pending_;
    dismissModal();
    start(confirmed);
}

void ConfirmationState::dismissModal() {
    pending_.reset();
    confirmationCode_.clear();
    confirmationInput_.clear();
    controller_.dismissResultAlert();
    Q_EMIT confirmationInputChanged();
    Q_EMIT pendingChanged();
}

void ConfirmationState::start(const PendingConfirmation& confirmed) {
    std::visit(OperationStarter{controller_}, confirmed.action);
}

} // namespace zentrill
