#include "ui/items/BusyWheel.h"

#include <QPainter>
#include <QTimerEvent>

namespace zentrill {

namespace {

constexpr qreal frame = 14;
constexpr int spokes = 10;
constexpr qreal spokeWidth = 1.6;
constexpr qreal spokeLength = 4;
constexpr int stepMilliseconds = 100;

} // namespace

BusyWheel::BusyWheel(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setImplicitSize(frame, frame);
}

void BusyWheel::setRunning(bool running) {
    if (running != running_) {
        running_ = running;
        turnWhileInSight();
        Q_EMIT runningChanged();
    }
}

void BusyWheel::setTint(const QColor& tint) {
    if (tint != tint_) {
        tint_ = tint;
        update();
        Q_EMIT tintChanged();
    }
}

void BusyWheel::paint(QPainter* painter) {
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(tint_);
    painter->translate(width() / 2, height() / 2);
    painter->rotate(turned_ * 360.0 / spokes);
    for (int spoke = 0; spoke < spokes; ++spoke) {
        painter->setOpacity(0.15 + (0.85 * spoke / (spokes - 1)));
        painter->drawRoundedRect(QRectF(-spokeWidth / 2, -height() / 2, spokeWidth, spokeLength),
                                 spokeWidth / 2, spokeWidth / 2);
        painter->rotate(360.0 / spokes);
    }
}

void BusyWheel::timerEvent(QTimerEvent* event) {
    if (event->timerId() == timer_.timerId()) {
        turned_ = (turned_ + 1) % spokes;
        update();
    }
}

void BusyWheel::itemChange(ItemChange change, const ItemChangeData& data) {
    if (change == ItemVisibleHasChanged || change == ItemSceneChange) {
        turnWhileInSight();
    }
    QQuickPaintedItem::itemChange(change, data);
}

void BusyWheel::turnWhileInSight() {
    if (!running_ || !isVisible()) {
        timer_.stop();
    } else if (!timer_.isActive()) {
        timer_.start(stepMilliseconds, this);
    }
}

} // namespace zentrill
