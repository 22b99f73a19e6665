#include "ui/items/ButtonAccessible.h"

#include "ui/items/Pressable.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPointer>

namespace zentrill {

namespace {

/// Space presses every kind of button, so that an assistive tool takes the same way as a key.
void pressByKey(QQuickItem* item) {
    const QPointer<QQuickItem> alive(item);
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "));
    QCoreApplication::sendEvent(item, &press);
    if (alive != nullptr) {
        QKeyEvent release(QEvent::KeyRelease, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "));
        QCoreApplication::sendEvent(item, &release);
    }
}

} // namespace

QAccessibleInterface* ButtonAccessible::make(const QString& className, QObject* object) {
    if (className != QLatin1String("QQuickAbstractButton") &&
        className != QLatin1String(Pressable::staticMetaObject.className())) {
        return nullptr;
    }
    auto* item = qobject_cast<QQuickItem*>(object);
    return item == nullptr ? nullptr : new ButtonAccessible(item);
}

ButtonAccessible::ButtonAccessible(QQuickItem* item) : ItemAccessible(item) {
    if (auto* pressable = qobject_cast<Pressable*>(item)) {
        QObject::connect(pressable, &Pressable::availableChanged, pressable,
                         [pressable] { announceAvailability(pressable); });
    }
}

QAccessible::Role ButtonAccessible::role() const {
    if (item()->inherits("QQuickSwitch")) {
        return QAccessible::CheckBox;
    }
    const QAccessible::Role role = ItemAccessible::role();
    return role == QAccessible::NoRole ? QAccessible::Button : role;
}

QAccessible::State ButtonAccessible::state() const {
    QAccessible::State state = ItemAccessible::state();
    state.focusable = item()->isEnabled();
    state.checkable = item()->property("checkable").toBool() || attachedFlag("checkable");
    state.checked = state.checkable && (item()->property("checked").toBool() || attachedFlag("checked"));
    return state;
}

QStringList ButtonAccessible::actionNames() const {
    QStringList names = ItemAccessible::actionNames();
    if (isAvailable()) {
        names.prepend(pressAction());
    }
    return names;
}

void ButtonAccessible::doAction(const QString& name) {
    if (name != pressAction()) {
        ItemAccessible::doAction(name);
    } else if (isAvailable() && item()->isVisible()) {
        pressByKey(item());
    }
}

bool ButtonAccessible::isAvailable() const {
    const auto* pressable = qobject_cast<const Pressable*>(item());
    return item()->isEnabled() && (pressable == nullptr || pressable->isAvailable());
}

} // namespace zentrill
