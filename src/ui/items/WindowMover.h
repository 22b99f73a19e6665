#pragma once

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace zentrill {

/// Lets a part of the background move the window. It is below the controls, which take presses first.
class WindowMover : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT

public:
    explicit WindowMover(QQuickItem* parent = nullptr);

protected:
    void mousePressEvent(QMouseEvent* event) override;
};

} // namespace zentrill
