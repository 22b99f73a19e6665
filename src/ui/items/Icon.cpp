#include "ui/items/Icon.h"

#include "ui/items/IconDrawing.h"

#include <QCache>
#include <QQuickWindow>
#include <QSGImageNode>

#include <cmath>
#include <memory>

namespace zentrill {

namespace {

/// More than a window shows at once; a drawing takes some kilobytes.
constexpr int keptDrawings = 200;

/// While a list is scrolled, rows come and go with the same few glyphs. Scene graphs that render in another
/// thread ask from there, one for each window.
QImage keptIcon(const QString& name, const QColor& tint, int pixels) {
    thread_local QCache<QString, QImage> kept(keptDrawings);
    const QString key =
        name % QLatin1Char('/') % QString::number(tint.rgba()) % QLatin1Char('/') % QString::number(pixels);
    QImage* image = kept.object(key);
    if (image == nullptr) {
        image = new QImage(drawIcon(name, tint, {pixels, pixels}));
        kept.insert(key, image);
    }
    return *image;
}

} // namespace

Icon::Icon(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
    setSize({size_, size_});
}

void Icon::setName(const QString& name) {
    if (name != name_) {
        name_ = name;
        update();
        Q_EMIT nameChanged();
    }
}

void Icon::setTint(const QColor& tint) {
    if (tint != tint_) {
        tint_ = tint;
        update();
        Q_EMIT tintChanged();
    }
}

void Icon::setSquareSize(qreal size) {
    if (size != size_) {
        size_ = size;
        setSize({size, size});
        update();
        Q_EMIT sizeChanged();
    }
}

QSGNode* Icon::updatePaintNode(QSGNode* node, UpdatePaintNodeData* /*data*/) {
    const std::unique_ptr<QSGNode> old(node);
    const int pixels = static_cast<int>(std::ceil(size_ * window()->effectiveDevicePixelRatio()));
    const QImage image = name_.isEmpty() || pixels <= 0 ? QImage() : keptIcon(name_, tint_, pixels);
    if (image.isNull()) {
        return nullptr;
    }
    QSGImageNode* const drawn = window()->createImageNode();
    drawn->setTexture(window()->createTextureFromImage(image));
    drawn->setOwnsTexture(true);
    drawn->setFiltering(QSGTexture::Linear);
    drawn->setRect(boundingRect());
    return drawn;
}

void Icon::itemChange(ItemChange change, const ItemChangeData& data) {
    if (change == ItemDevicePixelRatioHasChanged) {
        update();
    }
    QQuickItem::itemChange(change, data);
}

} // namespace zentrill
