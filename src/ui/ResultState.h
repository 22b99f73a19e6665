#pragma once

#include "controller/UninstallerViewModel.h"
#include "ui/models/FixedLinesModel.h"
#include "ui/models/LineSelection.h"

#include <QByteArray>
#include <QColor>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace zentrill {

/// What the result modal shows of the controller's result: the body and the error lines cut out of the
/// message, and the icon, colour and label of the outcome.
class ResultState : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by ContentViewState")
    Q_PROPERTY(QAbstractItemModel* messageLines READ messageLines CONSTANT FINAL)
    Q_PROPERTY(QAbstractItemModel* errorLines READ errorLines CONSTANT FINAL)
    Q_PROPERTY(zentrill::LineSelection* messageSelection READ messageSelection CONSTANT FINAL)
    Q_PROPERTY(zentrill::LineSelection* errorSelection READ errorSelection CONSTANT FINAL)
    Q_PROPERTY(QString outcomeIcon READ outcomeIcon NOTIFY outcomeChanged FINAL)
    Q_PROPERTY(QString outcomeLabel READ outcomeLabel NOTIFY outcomeChanged FINAL)
    Q_PROPERTY(QColor outcomeColor READ outcomeColor NOTIFY outcomeChanged FINAL)
    Q_PROPERTY(bool hasRetainedPaths READ hasRetainedPaths NOTIFY retainedPathsChanged FINAL)

public:
    /// `controller` outlives this object.
    explicit ResultState(const UninstallerViewModel& controller, QObject* parent = nullptr);

    /// The message up to "\nErrors:\n", or all of it without that.
    [[nodiscard]] static QString messageText(const QString& message);

    /// The lines after the first "\nErrors:\n" without the empty ones.
    [[nodiscard]] static QStringList parsedErrorLines(const QString& message);

    /// The path that a row of the message lists as left in place, in bytes; empty, never null, for other
    /// rows.
    Q_INVOKABLE [[nodiscard]] QByteArray retainedPath(int row) const;

    [[nodiscard]] QAbstractItemModel* messageLines() { return &messageLines_; }

    [[nodiscard]] QAbstractItemModel* errorLines() { return &errorLines_; }

    [[nodiscard]] LineSelection* messageSelection() { return &messageSelection_; }

    [[nodiscard]] LineSelection* errorSelection() { return &errorSelection_; }

    [[nodiscard]] QString outcomeIcon() const;
    [[nodiscard]] QString outcomeLabel() const;
    [[nodiscard]] QColor outcomeColor() const;

    /// Whether the note about paths left in place is shown.
    [[nodiscard]] bool hasRetainedPaths() const { return controller_.resultAlertRetainedPathCount() >= 1; }

Q_SIGNALS:
    void outcomeChanged();
    void retainedPathsChanged();

private:
    void readMessage();

    const UninstallerViewModel& controller_;
    FixedLinesModel messageLines_;
    /// The row below the message's heading.
    int firstPathRow_ = 0;
    FixedLinesModel errorLines_;
    LineSelection messageSelection_{messageLines_};
    LineSelection errorSelection_{errorLines_};
};

} // namespace zentrill
