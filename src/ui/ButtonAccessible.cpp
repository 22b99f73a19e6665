#include "ui/ButtonAccessible.h"

#include "ui/Pressable.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPointer>
#include <QQuickWindow>

#include <algorithm>
#include <iterator>
#include <vector>

namespace zentrill {

namespace {

/// The item's Accessible properties, whose type is not public: those written in QML and, in a second object,
/// those that the control fills in itself.
std::vector<const QObject*> accessibleProperties(const QObject& item) {
    std::vector<const QObject*> found;
    std::ranges::copy_if(item.children(), std::back_inserter(found),
                         [](const QObject* child) { return child->inherits("QQuickAccessibleAttached"); });
    return found;
}

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

ButtonAccessible::ButtonAccessible(QQuickItem* item) : QAccessibleObject(item) {
    QObject::connect(item, &QQuickItem::enabledChanged, item, [item] {
        QAccessible::State changed;
        changed.disabled = true;
        QAccessibleStateChangeEvent event(item, changed);
        QAccessible::updateAccessibility(&event);
    });
}

QWindow* ButtonAccessible::window() const {
    return item()->window();
}

QAccessibleInterface* ButtonAccessible::parent() const {
    for (QQuickItem* above = item()->parentItem(); above != nullptr; above = above->parentItem()) {
        // Items that assistive tools are not shown have no interface.
        if (QAccessibleInterface* found = QAccessible::queryAccessibleInterface(above)) {
            return found;
        }
    }
    return QAccessible::queryAccessibleInterface(item()->window());
}

QString ButtonAccessible::text(QAccessible::Text kind) const {
    switch (kind) {
    case QAccessible::Name: {
        const QString name = attachedText("name");
        return name.isEmpty() ? item()->property("text").toString() : name;
    }
    case QAccessible::Description:
        return attachedText("description");
    case QAccessible::Value:
        return item()->property("accessibleValue").toString();
    default:
        return {};
    }
}

QAccessible::Role ButtonAccessible::role() const {
    if (item()->inherits("QQuickCheckBox") || item()->inherits("QQuickSwitch")) {
        return QAccessible::CheckBox;
    }
    for (const QObject* properties : accessibleProperties(*item())) {
        const auto role = static_cast<QAccessible::Role>(properties->property("role").toInt());
        if (role != QAccessible::NoRole) {
            return role;
        }
    }
    return QAccessible::Button;
}

QAccessible::State ButtonAccessible::state() const {
    QAccessible::State state;
    state.disabled = !item()->isEnabled();
    state.focusable = item()->isEnabled();
    state.focused = item()->hasActiveFocus();
    state.checkable = item()->property("checkable").toBool();
    state.checked = state.checkable && item()->property("checked").toBool();
    state.selectable = attachedFlag("selectable");
    state.selected = attachedFlag("selected");
    state.invisible = !item()->isVisible() || item()->window() == nullptr || !item()->window()->isVisible();
    state.offscreen = visiblePart().isEmpty();
    return state;
}

QRect ButtonAccessible::rect() const {
    if (item()->window() == nullptr) {
        return {};
    }
    const QRect inScene = item()->mapRectToScene(item()->boundingRect()).toRect();
    return {item()->window()->mapToGlobal(inScene.topLeft()), inScene.size()};
}

void* ButtonAccessible::interface_cast(QAccessible::InterfaceType type) {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
}

QStringList ButtonAccessible::actionNames() const {
    return item()->isEnabled() ? QStringList{pressAction(), setFocusAction()} : QStringList();
}

void ButtonAccessible::doAction(const QString& name) {
    if (!item()->isEnabled() || !item()->isVisible()) {
        return;
    }
    if (name == pressAction()) {
        pressByKey(item());
    } else if (name == setFocusAction()) {
        item()->forceActiveFocus();
    }
}

QString ButtonAccessible::attachedText(const char* property) const {
    QString text;
    for (const QObject* properties : accessibleProperties(*item())) {
        text = text.isEmpty() ? properties->property(property).toString() : text;
    }
    return text;
}

bool ButtonAccessible::attachedFlag(const char* property) const {
    return std::ranges::any_of(accessibleProperties(*item()), [&](const QObject* properties) {
        return properties->property(property).toBool();
    });
}

QRectF ButtonAccessible::visiblePart() const {
    QRectF part = item()->mapRectToScene(item()->boundingRect());
    for (QQuickItem* above = item()->parentItem(); above != nullptr; above = above->parentItem()) {
        if (above->clip()) {
            part &= above->mapRectToScene(above->clipRect());
        }
    }
    return item()->window() == nullptr ? QRectF() : part & QRectF({}, QSizeF(item()->window()->size()));
}

} // namespace zentrill
