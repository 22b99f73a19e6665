#pragma once

#include <QColor>
#include <QQuickItem>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace zentrill {

/// One of the program's glyphs, tinted, drawn in the pixels of the screen. An empty or unknown name shows
/// nothing. Assistive tools do not see it.
class Icon : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged REQUIRED FINAL)
    Q_PROPERTY(QColor tint READ tint WRITE setTint NOTIFY tintChanged REQUIRED FINAL)
    /// The edge of its square, in device-independent pixels.
    Q_PROPERTY(qreal size READ size WRITE setSquareSize NOTIFY sizeChanged FINAL)

public:
    explicit Icon(QQuickItem* parent = nullptr);

    [[nodiscard]] QString name() const { return name_; }

    void setName(const QString& name);

    [[nodiscard]] QColor tint() const { return tint_; }

    void setTint(const QColor& tint);

    [[nodiscard]] qreal size() const { return size_; }

    void setSquareSize(qreal size);

Q_SIGNALS:
    void nameChanged();
    void tintChanged();
    void sizeChanged();

protected:
    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;

private:
    QString name_;
    QColor tint_;
    qreal size_ = 16;
};

} // namespace zentrill
