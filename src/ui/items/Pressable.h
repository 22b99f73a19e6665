#pragma once

#include <QQuickItem>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace zentrill {

/// The base of every push button: a surface that a click, Space, Return or Enter presses, and that knows
/// whether the pointer is over it. It draws nothing. It is lighter than a control of the toolkit, which would
/// be loaded before the first frame.
class Pressable : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged FINAL)
    /// Whether a press does anything. Unlike a disabled item, one that is not available can have the focus,
    /// so that the arrow keys do not skip it.
    Q_PROPERTY(bool available READ isAvailable WRITE setAvailable NOTIFY availableChanged FINAL)
    Q_PROPERTY(bool hovered READ hovered NOTIFY hoveredChanged FINAL)
    /// Whether releasing now would press it.
    Q_PROPERTY(bool down READ down NOTIFY downChanged FINAL)

public:
    explicit Pressable(QQuickItem* parent = nullptr);

    [[nodiscard]] QString text() const { return text_; }

    void setText(const QString& text);

    [[nodiscard]] bool hovered() const { return hovered_; }

    [[nodiscard]] bool down() const { return down_; }

    [[nodiscard]] bool isAvailable() const { return available_; }

    void setAvailable(bool available);

    /// Presses it, unless it is disabled or not available.
    Q_INVOKABLE void click();

Q_SIGNALS:
    void textChanged();
    void hoveredChanged();
    void downChanged();
    void availableChanged();
    void clicked();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseUngrabEvent() override;
    void hoverEnterEvent(QHoverEvent* event) override;
    void hoverLeaveEvent(QHoverEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;

private:
    void setHovered(bool hovered);
    void setDown(bool down);

    QString text_;
    bool hovered_ = false;
    bool down_ = false;
    bool available_ = true;
    /// Space was pressed here; only then its release counts.
    bool spaceHeld_ = false;
};

} // namespace zentrill
