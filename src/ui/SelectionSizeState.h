#pragma once

#include "controller/UninstallerViewModel.h"
#include "deletion/SafetyShield.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <string>
#include <vector>

namespace zentrill {

/// How much of the selected tools would go, in words, once it is known. It is computed between the
/// operations, after each scan and each change of the selection or the Safety Shield.
class SelectionSizeState : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by ContentViewState")
    Q_PROPERTY(QString text READ text NOTIFY textChanged FINAL)

public:
    /// `controller` outlives this object.
    explicit SelectionSizeState(UninstallerViewModel& controller, QObject* parent = nullptr);

    /// "1.2 GB would go"; empty as long as it is not known.
    [[nodiscard]] QString text() const { return text_; }

Q_SIGNALS:
    void textChanged();

private:
    void update();
    void setText(const QString& text);

    UninstallerViewModel& controller_;
    /// What the text is about, or will be.
    std::vector<std::string> tools_;
    SafetyShield shield_ = SafetyShield::off;
    QString text_;
};

} // namespace zentrill
