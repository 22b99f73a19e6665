#pragma once

#include <QFont>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace zentrill {

/// The type of every view: Inter if it is installed, otherwise the system's face. Sizes are in
/// device-independent pixels.
class Typography : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QFont brand READ brand CONSTANT FINAL)
    Q_PROPERTY(QFont overline READ overline CONSTANT FINAL)
    Q_PROPERTY(QFont title READ title CONSTANT FINAL)
    Q_PROPERTY(QFont resultTitle READ resultTitle CONSTANT FINAL)
    Q_PROPERTY(QFont section READ section CONSTANT FINAL)
    Q_PROPERTY(QFont name READ name CONSTANT FINAL)
    Q_PROPERTY(QFont control READ control CONSTANT FINAL)
    Q_PROPERTY(QFont rowControl READ rowControl CONSTANT FINAL)
    Q_PROPERTY(QFont body READ body CONSTANT FINAL)
    Q_PROPERTY(QFont detail READ detail CONSTANT FINAL)
    Q_PROPERTY(QFont caption READ caption CONSTANT FINAL)
    Q_PROPERTY(QFont tag READ tag CONSTANT FINAL)
    Q_PROPERTY(QFont console READ console CONSTANT FINAL)
    Q_PROPERTY(QFont consoleEmpty READ consoleEmpty CONSTANT FINAL)
    Q_PROPERTY(QFont code READ code CONSTANT FINAL)
    Q_PROPERTY(QFont codeField READ codeField CONSTANT FINAL)

public:
    explicit Typography(QObject* parent = nullptr);

    [[nodiscard]] QFont brand() const { return text(19, QFont::Bold); }

    /// Small capitals-style text: "SYSTEM UTILITY".
    [[nodiscard]] QFont overline() const;

    [[nodiscard]] QFont title() const { return text(21, QFont::DemiBold); }

    [[nodiscard]] QFont resultTitle() const { return text(19, QFont::DemiBold); }

    [[nodiscard]] QFont section() const { return text(18, QFont::DemiBold); }

    /// The first line of a row.
    [[nodiscard]] QFont name() const { return text(14, QFont::Medium); }

    [[nodiscard]] QFont control() const { return text(13, QFont::Medium); }

    /// The buttons of a row.
    [[nodiscard]] QFont rowControl() const { return text(12, QFont::Medium); }

    [[nodiscard]] QFont body() const { return text(13, QFont::Normal); }

    [[nodiscard]] QFont detail() const { return text(12, QFont::Normal); }

    [[nodiscard]] QFont caption() const { return text(11, QFont::Normal); }

    [[nodiscard]] QFont tag() const { return text(10, QFont::Medium); }

    [[nodiscard]] QFont console() const { return monospaced(12, QFont::Normal); }

    [[nodiscard]] QFont consoleEmpty() const { return monospaced(13, QFont::Normal); }

    /// The confirmation code as shown.
    [[nodiscard]] QFont code() const { return monospaced(26, QFont::DemiBold); }

    /// The confirmation code as typed.
    [[nodiscard]] QFont codeField() const { return monospaced(18, QFont::DemiBold); }

private:
    [[nodiscard]] QFont text(int pixelSize, QFont::Weight weight) const;
    [[nodiscard]] QFont monospaced(int pixelSize, QFont::Weight weight) const;

    QStringList families_;
    QString monospacedFamily_;
};

} // namespace zentrill
