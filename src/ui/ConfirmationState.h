#pragma once

#include "controller/UninstallerViewModel.h"
#include "ui/PendingConfirmation.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <optional>
#include <string>

namespace zentrill {

/// The pending destructive action, the code issued for it and what has been typed so far. Nothing is removed
/// before the typed text matches.
class ConfirmationState : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by ContentViewState")
    Q_PROPERTY(bool isPending READ isPending NOTIFY pendingChanged FINAL)
    Q_PROPERTY(QString title READ title NOTIFY pendingChanged FINAL)
    Q_PROPERTY(QString message READ message NOTIFY pendingChanged FINAL)
    Q_PROPERTY(QString actionTitle READ actionTitle NOTIFY pendingChanged FINAL)
    Q_PROPERTY(QString confirmationCode READ confirmationCode NOTIFY pendingChanged FINAL)
    Q_PROPERTY(QString confirmationInput READ confirmationInput WRITE setConfirmationInput NOTIFY
                   confirmationInputChanged FINAL)
    Q_PROPERTY(bool matches READ matches NOTIFY confirmationInputChanged FINAL)

public:
    /// Draws a code of eight digits.
    using CodeSource = std::function<std::string()>;

    /// `controller` outlives this object. Without a `CodeSource`, codes come from the system's secure random
    /// generator.
    explicit ConfirmationState(UninstallerViewModel& controller, CodeSource codes = {},
                               QObject* parent = nullptr);

    [[nodiscard]] bool isPending() const { return pending_.has_value(); }

    [[nodiscard]] QString title() const;
    [[nodiscard]] QString message() const;
    [[nodiscard]] QString actionTitle() const;
    [[nodiscard]] QString confirmationCode() const;

    [[nodiscard]] QString confirmationInput() const { return confirmationInput_; }

    void setConfirmationInput(const QString& input);

    /// Whether the typed text is the issued code.
    [[nodiscard]] bool matches() const;

    /// Whether a confirmation may open now: none is pending, nothing runs and no result is shown.
    [[nodiscard]] bool canPresent() const;

    /// Opens the confirmation with a code that differs from the one issued last; does nothing while another
    /// one is pending, the controller is busy or a result is shown.
    void presentConfirmation(PendingConfirmation pending);

    /// Starts the pending action if the code matches; otherwise nothing happens.
    Q_INVOKABLE void confirm();

    /// Forgets the pending action, its code and the typed text, and closes a shown result.
    Q_INVOKABLE void dismissModal();

Q_SIGNALS:
    void pendingChanged();
    void confirmationInputChanged();

private:
    void start(const PendingConfirmation& confirmed);

    UninstallerViewModel& controller_;
    CodeSource codes_;
    std::optional<PendingConfirmation> pending_;
    std::string confirmationCode_;
    std::string lastConfirmationCode_;
    QString confirmationInput_;
};

} // namespace zentrill
