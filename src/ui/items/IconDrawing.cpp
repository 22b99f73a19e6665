#include "ui/items/IconDrawing.h"

#include <QPainter>
#include <QSvgRenderer>

namespace zentrill {

QImage drawIcon(const QString& identifier, const QColor& tint, QSize size) {
    QSvgRenderer drawing(QStringLiteral(":/zentrill/icons/%1.svg").arg(identifier));
    if (!drawing.isValid()) {
        return {};
    }
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawing.render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), tint);
    return image;
}

} // namespace zentrill
