#include "ui/items/TextFieldAccessible.h"

#include <algorithm>

namespace zentrill {

QAccessibleInterface* TextFieldAccessible::make(const QString& className, QObject* object) {
    auto* item = qobject_cast<QQuickItem*>(object);
    return item != nullptr && className == QLatin1String("QQuickTextInput") && isShown(*item)
               ? new TextFieldAccessible(item)
               : nullptr;
}

QString TextFieldAccessible::text(QAccessible::Text kind) const {
    return kind == QAccessible::Value ? content() : ItemAccessible::text(kind);
}

QAccessible::State TextFieldAccessible::state() const {
    QAccessible::State state = ItemAccessible::state();
    state.editable = !item()->property("readOnly").toBool();
    state.selectableText = true;
    return state;
}

void* TextFieldAccessible::interface_cast(QAccessible::InterfaceType type) {
    if (type == QAccessible::TextInterface) {
        return static_cast<QAccessibleTextInterface*>(this);
    }
    if (type == QAccessible::EditableTextInterface) {
        return state().editable ? static_cast<QAccessibleEditableTextInterface*>(this) : nullptr;
    }
    return ItemAccessible::interface_cast(type);
}

void TextFieldAccessible::selection(int selectionIndex, int* startOffset, int* endOffset) const {
    const bool isThere = selectionIndex == 0 && selectionCount() > 0;
    *startOffset = isThere ? item()->property("selectionStart").toInt() : 0;
    *endOffset = isThere ? item()->property("selectionEnd").toInt() : 0;
}

int TextFieldAccessible::selectionCount() const {
    return item()->property("selectedText").toString().isEmpty() ? 0 : 1;
}

void TextFieldAccessible::addSelection(int startOffset, int endOffset) {
    setSelection(0, startOffset, endOffset);
}

void TextFieldAccessible::removeSelection(int selectionIndex) {
    if (selectionIndex == 0) {
        QMetaObject::invokeMethod(item(), "deselect");
    }
}

void TextFieldAccessible::setSelection(int selectionIndex, int startOffset, int endOffset) {
    if (selectionIndex == 0) {
        QMetaObject::invokeMethod(item(), "select", Q_ARG(int, within(startOffset)),
                                  Q_ARG(int, within(endOffset)));
    }
}

int TextFieldAccessible::cursorPosition() const {
    return item()->property("cursorPosition").toInt();
}

void TextFieldAccessible::setCursorPosition(int position) {
    item()->setProperty("cursorPosition", within(position));
}

QString TextFieldAccessible::text(int startOffset, int endOffset) const {
    const int start = within(startOffset);
    return content().mid(start, std::max(0, within(endOffset) - start));
}

int TextFieldAccessible::characterCount() const {
    return static_cast<int>(content().size());
}

QRect TextFieldAccessible::characterRect(int offset) const {
    const auto edge = [this](int place) {
        QRectF line;
        QMetaObject::invokeMethod(item(), "positionToRectangle", Q_RETURN_ARG(QRectF, line),
                                  Q_ARG(int, place));
        return line;
    };
    const int place = within(offset);
    const QRectF start = edge(place);
    const double width = place < characterCount() ? edge(place + 1).x() - start.x() : 0;
    return QRectF(item()->mapToGlobal(start.topLeft()), QSizeF(width, start.height())).toRect();
}

int TextFieldAccessible::offsetAtPoint(const QPoint& point) const {
    for (int offset = 0; offset < characterCount(); ++offset) {
        if (characterRect(offset).contains(point)) {
            return offset;
        }
    }
    return -1;
}

void TextFieldAccessible::scrollToSubstring(int startIndex, int /*endIndex*/) {
    setCursorPosition(startIndex);
}

QString TextFieldAccessible::attributes(int /*offset*/, int* startOffset, int* endOffset) const {
    *startOffset = 0;
    *endOffset = characterCount();
    return {};
}

void TextFieldAccessible::deleteText(int startOffset, int endOffset) {
    replaceText(startOffset, endOffset, {});
}

void TextFieldAccessible::insertText(int offset, const QString& text) {
    replaceText(offset, offset, text);
}

void TextFieldAccessible::replaceText(int startOffset, int endOffset, const QString& text) {
    if (!state().editable || !isAvailable() || !item()->isVisible()) {
        return;
    }
    const int start = within(startOffset);
    const int end = std::max(start, within(endOffset));
    item()->setProperty("text", content().replace(start, end - start, text));
    setCursorPosition(start + static_cast<int>(text.size()));
}

int TextFieldAccessible::within(int offset) const {
    return offset < 0 ? characterCount() : std::min(offset, characterCount());
}

} // namespace zentrill
