#pragma once

#include <QObject>
#include <QPointer>
#include <QQuickTextDocument>
#include <QtQml/qqmlregistration.h>

namespace zentrill {

/// Spaces the lines of a TextEdit, which, unlike Text, has no property for that:
///
///     TextEdit { id: edit; LineSpacing { document: edit.textDocument; proportion: 1.3 } }
class LineSpacing : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickTextDocument* document READ document WRITE setDocument NOTIFY documentChanged FINAL)
    /// The height of a line in proportion to the font's own.
    Q_PROPERTY(qreal proportion READ proportion WRITE setProportion NOTIFY proportionChanged FINAL)

public:
    using QObject::QObject;

    [[nodiscard]] QQuickTextDocument* document() const { return document_; }

    void setDocument(QQuickTextDocument* document);

    [[nodiscard]] qreal proportion() const { return proportion_; }

    void setProportion(qreal proportion);

Q_SIGNALS:
    void documentChanged();
    void proportionChanged();

private:
    /// A new text does not keep the previous spacing.
    void apply();

    QPointer<QQuickTextDocument> document_;
    qreal proportion_ = 1;
};

} // namespace zentrill
