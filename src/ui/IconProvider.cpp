#include "ui/IconProvider.h"

#include <QPainter>
#include <QSvgRenderer>

namespace zentrill {

namespace {

constexpr int defaultPixels = 24;

} // namespace

IconProvider::IconProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}

QImage IconProvider::icon(const QString& identifier, const QColor& tint, QSize size) {
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

QImage IconProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    const qsizetype slash = id.lastIndexOf(QLatin1Char('/'));
    const QColor tint(QLatin1Char('#') + id.mid(slash + 1));
    const QSize pixels(requestedSize.width() > 0 ? requestedSize.width() : defaultPixels,
                       requestedSize.height() > 0 ? requestedSize.height() : defaultPixels);
    QImage image = icon(id.left(slash), tint, pixels);
    if (size != nullptr) {
        *size = image.size();
    }
    return image;
}

} // namespace zentrill
