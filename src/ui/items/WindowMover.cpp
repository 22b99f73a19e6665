#include "ui/items/WindowMover.h"

#include <QQuickWindow>

namespace zentrill {

WindowMover::WindowMover(QQuickItem* parent) : QQuickItem(parent) {
    setAcceptedMouseButtons(Qt::LeftButton);
}

void WindowMover::mousePressEvent(QMouseEvent* event) {
    if (window() != nullptr) {
        window()->startSystemMove();
    }
    event->ignore();
}

} // namespace zentrill
