#pragma once

#include <QColor>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace zentrill {

/// The ten named colours of every view, opaque, in sRGB.
class WarmPalette : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QColor canvas MEMBER canvas CONSTANT FINAL)
    Q_PROPERTY(QColor sidebar MEMBER sidebar CONSTANT FINAL)
    Q_PROPERTY(QColor row MEMBER row CONSTANT FINAL)
    Q_PROPERTY(QColor selected MEMBER selected CONSTANT FINAL)
    Q_PROPERTY(QColor paper MEMBER paper CONSTANT FINAL)
    Q_PROPERTY(QColor secondary MEMBER secondary CONSTANT FINAL)
    Q_PROPERTY(QColor tertiary MEMBER tertiary CONSTANT FINAL)
    Q_PROPERTY(QColor copper MEMBER copper CONSTANT FINAL)
    Q_PROPERTY(QColor action MEMBER action CONSTANT FINAL)
    Q_PROPERTY(QColor danger MEMBER danger CONSTANT FINAL)
    Q_PROPERTY(QColor success MEMBER success CONSTANT FINAL)

public:
    using QObject::QObject;

    /// Content area background.
    const QColor canvas{23, 23, 21};
    const QColor sidebar{34, 33, 30};
    /// List rows, tiles, tags and cards.
    const QColor row{37, 36, 32};
    /// A selected sidebar item or row.
    const QColor selected{52, 48, 41};
    /// Primary text.
    const QColor paper{243, 238, 229};
    const QColor secondary{201, 194, 184};
    /// Dim text and, at 0.24 opacity, hairlines.
    const QColor tertiary{169, 161, 150};
    const QColor copper{216, 172, 119};
    /// Primary action buttons.
    const QColor action{187, 134, 85};
    /// Destructive actions, errors and warnings.
    const QColor danger{241, 173, 164};
    /// The dark appearance's standard green of the Mac, for a complete result.
    const QColor success{50, 215, 75};

    /// `colour` at `opacity` from 0 to 1.
    // NOLINTNEXTLINE(readability-convert-member-functions-to-static): QML calls it on the singleton
    Q_INVOKABLE [[nodiscard]] QColor faint(const QColor& colour, double opacity) const {
        QColor result = colour;
        result.setAlphaF(static_cast<float>(opacity));
        return result;
    }
};

} // namespace zentrill
