#pragma once

#include "ui/items/ItemAccessible.h"

namespace zentrill {

/// What assistive tools are told about a button, a check box, a switch or a tab, and how they press it. A
/// press through Qt Quick's own implementation, as of 6.4, never arrives.
///
///     QAccessible::installFactory(&ButtonAccessible::make);
class ButtonAccessible final : public ItemAccessible {
public:
    /// Takes every control that is pressed; to be given to QAccessible::installFactory.
    static QAccessibleInterface* make(const QString& className, QObject* object);

    explicit ButtonAccessible(QQuickItem* item);

    [[nodiscard]] QAccessibleInterface* child(int /*index*/) const override { return nullptr; }

    [[nodiscard]] int childCount() const override { return 0; }

    [[nodiscard]] int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }

    [[nodiscard]] QAccessible::Role role() const override;
    [[nodiscard]] QAccessible::State state() const override;

    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString& name) override;

private:
    [[nodiscard]] bool isAvailable() const override;
};

} // namespace zentrill
