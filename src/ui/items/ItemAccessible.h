#pragma once

#include <QAccessible>
#include <QAccessibleObject>
#include <QQuickItem>

#include <vector>

namespace zentrill {

/// What assistive tools are told about an item of the views. Qt Quick's own implementation, as of 6.4,
/// reports disabled items as enabled, has no modal dialogs, and gives the rows of a list in the order of
/// their creation, which differs from the order on the screen once rows are reused.
///
///     QAccessible::installFactory(&ItemAccessible::make);
///
/// Role, name, description and flags are those of the item's Accessible properties; the value is the item's
/// own `accessibleValue`, for which QML has no such property. A disabled item takes
/// neither an action nor the focus.
class ItemAccessible : public QAccessibleObject,
                       public QAccessibleActionInterface,
                       public QAccessibleValueInterface {
public:
    /// Handles every item with Accessible properties but the code field, whose text Qt's implementation
    /// knows; to be given to QAccessible::installFactory.
    static QAccessibleInterface* make(const QString& className, QObject* object);

    explicit ItemAccessible(QQuickItem* item);

    [[nodiscard]] QWindow* window() const override;
    [[nodiscard]] QAccessibleInterface* parent() const override;
    [[nodiscard]] QAccessibleInterface* child(int index) const override;
    [[nodiscard]] int childCount() const override;
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override;
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    [[nodiscard]] QAccessible::Role role() const override;
    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] QRect rect() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString& name) override;

    [[nodiscard]] QStringList keyBindingsForAction(const QString& /*name*/) const override { return {}; }

    /// The place of a scroll bar, from 0 to 1.
    [[nodiscard]] QVariant currentValue() const override;
    void setCurrentValue(const QVariant& value) override;

    [[nodiscard]] QVariant minimumValue() const override { return 0.0; }

    [[nodiscard]] QVariant maximumValue() const override;

    [[nodiscard]] QVariant minimumStepSize() const override { return {}; }

protected:
    /// Whether assistive tools are shown the item: it has Accessible properties that do not forbid it.
    [[nodiscard]] static bool isShown(const QQuickItem& item);

    [[nodiscard]] QQuickItem* item() const { return static_cast<QQuickItem*>(object()); }

    /// Whether it can be used now.
    [[nodiscard]] virtual bool isAvailable() const { return item()->isEnabled(); }

    /// Tells listeners that isAvailable() has changed.
    static void announceAvailability(QQuickItem* item);

    /// One of the item's Accessible properties.
    [[nodiscard]] QString attachedText(const char* property) const;
    [[nodiscard]] bool attachedFlag(const char* property) const;

private:
    /// Adds the items below `item` that assistive tools are shown, even below items that they are not shown.
    static void collectShown(const QQuickItem& item, std::vector<QQuickItem*>& found);
    /// The items below it that assistive tools are shown, in the order in which they are read.
    [[nodiscard]] std::vector<QQuickItem*> shownItems() const;
    /// The part of the item that no clipping ancestor hides, in the scene's coordinates.
    [[nodiscard]] QRectF visiblePart() const;
};

} // namespace zentrill
