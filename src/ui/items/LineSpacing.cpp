#include "ui/items/LineSpacing.h"

#include <QTextBlockFormat>
#include <QTextCursor>
#include <QTextDocument>

namespace zentrill {

void LineSpacing::setDocument(QQuickTextDocument* document) {
    if (document == document_) {
        return;
    }
    if (document_ != nullptr) {
        disconnect(document_->textDocument(), nullptr, this, nullptr);
    }
    document_ = document;
    if (document_ != nullptr) {
        connect(document_->textDocument(), &QTextDocument::contentsChanged, this, &LineSpacing::apply);
    }
    apply();
    Q_EMIT documentChanged();
}

void LineSpacing::setProportion(qreal proportion) {
    if (!qFuzzyCompare(proportion, proportion_)) {
        proportion_ = proportion;
        apply();
        Q_EMIT proportionChanged();
    }
}

void LineSpacing::apply() {
    if (document_ == nullptr) {
        return;
    }
    QTextCursor cursor(document_->textDocument());
    const qreal percent = proportion_ * 100;
    const bool isPlain = cursor.blockFormat().lineHeightType() == QTextBlockFormat::SingleHeight;
    if (isPlain ? qFuzzyCompare(proportion_, 1) : qFuzzyCompare(cursor.blockFormat().lineHeight(), percent)) {
        return;
    }
    QTextBlockFormat format;
    format.setLineHeight(percent, QTextBlockFormat::ProportionalHeight);
    cursor.select(QTextCursor::Document);
    cursor.mergeBlockFormat(format);
}

} // namespace zentrill
