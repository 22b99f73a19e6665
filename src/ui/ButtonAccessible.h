#pragma once

#include <QAccessible>
#include <QAccessibleObject>
#include <QQuickItem>

namespace zentrill {

/// What assistive tools are told about a button, a check box, a switch or a tab, and how they press it. Qt
/// Quick's own account, as of 6.4, calls disabled controls enabled, and a press that it passes on never
/// arrives.
///
///     QAccessible::installFactory(&ButtonAccessible::make);
///
/// Name, description and selected are those of the item's Accessible properties; the value is the item's own
/// `accessibleValue`, for which QML has no such property. A disabled item takes
/// neither a press nor the focus.
class ButtonAccessible final : public QAccessibleObject, public QAccessibleActionInterface {
public:
    /// Takes every control that is pressed; to be given to QAccessible::installFactory.
    static QAccessibleInterface* make(const QString& className, QObject* object);

    explicit ButtonAccessible(QQuickItem* item);

    [[nodiscard]] QWindow* window() const override;
    [[nodiscard]] QAccessibleInterface* parent() const override;

    [[nodiscard]] QAccessibleInterface* child(int /*index*/) const override { return nullptr; }

    [[nodiscard]] int childCount() const override { return 0; }

    [[nodiscard]] int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }

    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    [[nodiscard]] QAccessible::Role role() const override;
    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] QRect rect() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString& name) override;

    [[nodiscard]] QStringList keyBindingsForAction(const QString& /*name*/) const override { return {}; }

private:
    [[nodiscard]] QQuickItem* item() const { return static_cast<QQuickItem*>(object()); }

    /// One of the item's Accessible properties.
    [[nodiscard]] QString attachedText(const char* property) const;
    [[nodiscard]] bool attachedFlag(const char* property) const;
    /// The part of the item that no clipping ancestor hides, in the scene's coordinates.
    [[nodiscard]] QRectF visiblePart() const;
};

} // namespace zentrill
