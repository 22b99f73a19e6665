#include "ui/items/Pressable.h"

namespace zentrill {

Pressable::Pressable(QQuickItem* parent) : QQuickItem(parent) {
    setAcceptedMouseButtons(Qt::LeftButton);
    setAcceptHoverEvents(true);
    setActiveFocusOnTab(true);
}

void Pressable::setText(const QString& text) {
    if (text != text_) {
        text_ = text;
        Q_EMIT textChanged();
    }
}

void Pressable::setAvailable(bool available) {
    if (available != available_) {
        available_ = available;
        Q_EMIT availableChanged();
    }
}

void Pressable::click() {
    if (isEnabled() && available_) {
        Q_EMIT clicked();
    }
}

void Pressable::mousePressEvent(QMouseEvent* event) {
    forceActiveFocus(Qt::MouseFocusReason);
    setDown(true);
    event->accept();
}

void Pressable::mouseMoveEvent(QMouseEvent* event) {
    setDown(contains(event->position()));
}

void Pressable::mouseReleaseEvent(QMouseEvent* event) {
    const bool pressed = down_ && contains(event->position());
    setDown(false);
    if (pressed) {
        click();
    }
}

void Pressable::mouseUngrabEvent() {
    setDown(false);
}

void Pressable::hoverEnterEvent(QHoverEvent* event) {
    setHovered(true);
    event->accept();
}

void Pressable::hoverLeaveEvent(QHoverEvent* event) {
    setHovered(false);
    event->accept();
}

void Pressable::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Space:
        if (!event->isAutoRepeat()) {
            spaceHeld_ = true;
            setDown(true);
        }
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        // A key that is held down counts once.
        if (!event->isAutoRepeat()) {
            click();
        }
        break;
    default:
        event->ignore();
    }
}

void Pressable::keyReleaseEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Space) {
        event->ignore();
        return;
    }
    if (!event->isAutoRepeat() && spaceHeld_) {
        spaceHeld_ = false;
        setDown(false);
        click();
    }
}

void Pressable::focusOutEvent(QFocusEvent* event) {
    spaceHeld_ = false;
    setDown(false);
    QQuickItem::focusOutEvent(event);
}

void Pressable::itemChange(ItemChange change, const ItemChangeData& data) {
    if ((change == ItemEnabledHasChanged || change == ItemVisibleHasChanged) && !data.boolValue) {
        spaceHeld_ = false;
        setDown(false);
        setHovered(false);
    }
    QQuickItem::itemChange(change, data);
}

void Pressable::setHovered(bool hovered) {
    if (hovered != hovered_) {
        hovered_ = hovered;
        Q_EMIT hoveredChanged();
    }
}

void Pressable::setDown(bool down) {
    if (down != down_) {
        down_ = down;
        Q_EMIT downChanged();
    }
}

} // namespace zentrill
