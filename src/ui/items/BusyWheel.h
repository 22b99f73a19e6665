#pragma once

#include <QBasicTimer>
#include <QColor>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

namespace zentrill {

/// Ten fading spokes in a 14 × 14 frame; they turn in steps, so that they are repainted only ten times a
/// second, and never while out of sight.
class BusyWheel : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool running READ running WRITE setRunning NOTIFY runningChanged FINAL)
    Q_PROPERTY(QColor tint READ tint WRITE setTint NOTIFY tintChanged FINAL)

public:
    explicit BusyWheel(QQuickItem* parent = nullptr);

    [[nodiscard]] bool running() const { return running_; }

    void setRunning(bool running);

    [[nodiscard]] QColor tint() const { return tint_; }

    void setTint(const QColor& tint);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void runningChanged();
    void tintChanged();

protected:
    void timerEvent(QTimerEvent* event) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;

private:
    void turnWhileInSight();

    QColor tint_;
    QBasicTimer timer_;
    bool running_ = true;
    int turned_ = 0;
};

} // namespace zentrill
