#include "ui/items/ItemAccessible.h"

#include "ui/items/ManualCodeTextView.h"

#include <QQuickWindow>

#include <algorithm>
#include <iterator>

namespace zentrill {

namespace {

/// The item's Accessible properties, whose type is not public: those written in QML and, in a second object,
/// those that a control fills in itself.
std::vector<const QObject*> accessibleProperties(const QObject& item) {
    std::vector<const QObject*> found;
    std::ranges::copy_if(item.children(), std::back_inserter(found),
                         [](const QObject* child) { return child->inherits("QQuickAccessibleAttached"); });
    return found;
}

/// The function in QML of an item that has a menu.
constexpr const char* showMenu = "showMenu()";

/// The rows of a list are in a separate item, in the order of their creation. Rows that wait to be reused are
/// there as well, hidden.
bool holdsRows(const QQuickItem& item) {
    const QQuickItem* list = item.parentItem();
    return list != nullptr && list->inherits("QQuickListView") &&
           list->property("contentItem").value<QQuickItem*>() == &item;
}

std::vector<QQuickItem*> childrenInReadingOrder(const QQuickItem& item) {
    const QList<QQuickItem*> children = item.childItems();
    std::vector<QQuickItem*> ordered(children.begin(), children.end());
    if (holdsRows(item)) {
        std::erase_if(ordered, [](const QQuickItem* row) { return !row->isVisible(); });
        std::ranges::sort(ordered, {}, &QQuickItem::y); // No two rows start at the same height.
    }
    return ordered;
}

} // namespace

void ItemAccessible::collectShown(const QQuickItem& item, std::vector<QQuickItem*>& found) {
    for (QQuickItem* child : childrenInReadingOrder(item)) {
        if (isShown(*child) && QAccessible::queryAccessibleInterface(child) != nullptr) {
            found.push_back(child);
        } else {
            collectShown(*child, found);
        }
    }
}

bool ItemAccessible::isShown(const QQuickItem& item) {
    return std::ranges::any_of(accessibleProperties(item), [](const QObject* properties) {
        return !properties->property("ignored").toBool();
    });
}

QAccessibleInterface* ItemAccessible::make(const QString& className, QObject* object) {
    if (className != QLatin1String(QQuickItem::staticMetaObject.className()) ||
        qobject_cast<ManualCodeTextView*>(object) != nullptr) {
        return nullptr;
    }
    auto* item = qobject_cast<QQuickItem*>(object);
    return item != nullptr && isShown(*item) ? new ItemAccessible(item) : nullptr;
}

ItemAccessible::ItemAccessible(QQuickItem* item) : QAccessibleObject(item) {
    QObject::connect(item, &QQuickItem::enabledChanged, item, [item] { announceAvailability(item); });
}

QWindow* ItemAccessible::window() const {
    return item()->window();
}

QAccessibleInterface* ItemAccessible::parent() const {
    for (QQuickItem* above = item()->parentItem(); above != nullptr; above = above->parentItem()) {
        if (isShown(*above)) {
            return QAccessible::queryAccessibleInterface(above);
        }
    }
    return QAccessible::queryAccessibleInterface(item()->window());
}

QAccessibleInterface* ItemAccessible::child(int index) const {
    const std::vector<QQuickItem*> items = shownItems();
    const auto place = static_cast<std::size_t>(index);
    return index >= 0 && place < items.size() ? QAccessible::queryAccessibleInterface(items[place]) : nullptr;
}

int ItemAccessible::childCount() const {
    return static_cast<int>(shownItems().size());
}

int ItemAccessible::indexOfChild(const QAccessibleInterface* child) const {
    const std::vector<QQuickItem*> items = shownItems();
    const auto found = std::ranges::find(items, child->object());
    return found == items.end() ? -1 : static_cast<int>(found - items.begin());
}

QString ItemAccessible::text(QAccessible::Text kind) const {
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

QAccessible::Role ItemAccessible::role() const {
    for (const QObject* properties : accessibleProperties(*item())) {
        const auto role = static_cast<QAccessible::Role>(properties->property("role").toInt());
        if (role != QAccessible::NoRole) {
            return role;
        }
    }
    return QAccessible::NoRole;
}

QAccessible::State ItemAccessible::state() const {
    const QAccessible::Role kind = role();
    QAccessible::State state;
    state.disabled = !isAvailable();
    state.focusable = item()->isEnabled() && (item()->activeFocusOnTab() || attachedFlag("focusable"));
    state.focused = item()->hasActiveFocus();
    state.selectable = attachedFlag("selectable");
    state.selected = attachedFlag("selected");
    state.readOnly = kind == QAccessible::StaticText;
    // Every dialog of the views blocks the rest of the window.
    state.modal = kind == QAccessible::Dialog;
    state.invisible = !item()->isVisible() || item()->window() == nullptr || !item()->window()->isVisible();
    state.offscreen = visiblePart().isEmpty();
    return state;
}

QRect ItemAccessible::rect() const {
    if (item()->window() == nullptr) {
        return {};
    }
    const QRect inScene = item()->mapRectToScene(item()->boundingRect()).toRect();
    return {item()->window()->mapToGlobal(inScene.topLeft()), inScene.size()};
}

void* ItemAccessible::interface_cast(QAccessible::InterfaceType type) {
    if (type == QAccessible::ActionInterface) {
        return static_cast<QAccessibleActionInterface*>(this);
    }
    return type == QAccessible::ValueInterface && role() == QAccessible::ScrollBar
               ? static_cast<QAccessibleValueInterface*>(this)
               : nullptr;
}

QStringList ItemAccessible::actionNames() const {
    QStringList names;
    if (state().focusable) {
        names.append(setFocusAction());
    }
    if (item()->metaObject()->indexOfMethod(showMenu) >= 0) {
        names.append(showMenuAction());
    }
    return names;
}

void ItemAccessible::doAction(const QString& name) {
    if (name == setFocusAction() && state().focusable && item()->isVisible()) {
        item()->forceActiveFocus();
    } else if (name == showMenuAction() && item()->isEnabled() && item()->isVisible()) {
        QMetaObject::invokeMethod(item(), "showMenu");
    }
}

QVariant ItemAccessible::currentValue() const {
    return item()->property("position");
}

void ItemAccessible::setCurrentValue(const QVariant& value) {
    if (item()->isEnabled()) {
        item()->setProperty("position", std::clamp(value.toDouble(), 0.0, maximumValue().toDouble()));
    }
}

QVariant ItemAccessible::maximumValue() const {
    return 1.0 - item()->property("size").toDouble();
}

void ItemAccessible::announceAvailability(QQuickItem* item) {
    QAccessible::State changed;
    changed.disabled = true;
    QAccessibleStateChangeEvent event(item, changed);
    QAccessible::updateAccessibility(&event);
}

QString ItemAccessible::attachedText(const char* property) const {
    QString text;
    for (const QObject* properties : accessibleProperties(*item())) {
        text = text.isEmpty() ? properties->property(property).toString() : text;
    }
    return text;
}

bool ItemAccessible::attachedFlag(const char* property) const {
    return std::ranges::any_of(accessibleProperties(*item()), [&](const QObject* properties) {
        return properties->property(property).toBool();
    });
}

std::vector<QQuickItem*> ItemAccessible::shownItems() const {
    std::vector<QQuickItem*> found;
    collectShown(*item(), found);
    return found;
}

QRectF ItemAccessible::visiblePart() const {
    QRectF part = item()->mapRectToScene(item()->boundingRect());
    for (QQuickItem* above = item()->parentItem(); above != nullptr; above = above->parentItem()) {
        if (above->clip()) {
            part &= above->mapRectToScene(above->clipRect());
        }
    }
    return item()->window() == nullptr ? QRectF() : part & QRectF({}, QSizeF(item()->window()->size()));
}

} // namespace zentrill
