#pragma once

#include "ui/items/ItemAccessible.h"

namespace zentrill {

/// What assistive tools are told about a line of text, and how they write into it. With Qt Quick's own
/// implementation, as of 6.4, they can only read. A field that is disabled or hidden, such as one below a
/// modal, does not change.
///
///     QAccessible::installFactory(&TextFieldAccessible::make);
///
/// Offsets are those of UTF-16, as in Qt's texts; an offset beyond the text means its end.
class TextFieldAccessible final : public ItemAccessible,
                                  public QAccessibleTextInterface,
                                  public QAccessibleEditableTextInterface {
public:
    /// Handles every TextInput with Accessible properties; to be given to QAccessible::installFactory. The
    /// code field is not a TextInput: only keys write into it.
    static QAccessibleInterface* make(const QString& className, QObject* object);

    explicit TextFieldAccessible(QQuickItem* item) : ItemAccessible(item) {}

    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    [[nodiscard]] QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    void selection(int selectionIndex, int* startOffset, int* endOffset) const override;
    [[nodiscard]] int selectionCount() const override;
    void addSelection(int startOffset, int endOffset) override;
    void removeSelection(int selectionIndex) override;
    void setSelection(int selectionIndex, int startOffset, int endOffset) override;
    [[nodiscard]] int cursorPosition() const override;
    void setCursorPosition(int position) override;
    [[nodiscard]] QString text(int startOffset, int endOffset) const override;
    [[nodiscard]] int characterCount() const override;
    [[nodiscard]] QRect characterRect(int offset) const override;
    [[nodiscard]] int offsetAtPoint(const QPoint& point) const override;
    void scrollToSubstring(int startIndex, int endIndex) override;
    QString attributes(int offset, int* startOffset, int* endOffset) const override;

    void deleteText(int startOffset, int endOffset) override;
    void insertText(int offset, const QString& text) override;
    void replaceText(int startOffset, int endOffset, const QString& text) override;

private:
    [[nodiscard]] QString content() const { return item()->property("text").toString(); }

    /// The nearest valid offset; a negative one means the end.
    [[nodiscard]] int within(int offset) const;
};

} // namespace zentrill
