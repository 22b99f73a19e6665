#pragma once

#include "ui/items/ItemAccessible.h"

namespace zentrill {

/// What assistive tools are told about a line of text, and how they write into it: Qt Quick's own account, as
/// of 6.4, lets them only read. A field that is disabled or hidden, such as one below a modal, stays as it
/// is.
///
///     QAccessible::installFactory(&TextFieldAccessible::make);
///
/// Offsets are those of UTF-16, as in Qt's texts; what lies beyond the text means its end.
class TextFieldAccessible final : public ItemAccessible,
                                  public QAccessibleTextInterface,
                                  public QAccessibleEditableTextInterface {
public:
    /// Takes every TextInput with Accessible properties; to be given to QAccessible::installFactory. The
    /// code's field is none, and is not written into by anything but keys.
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

    /// The nearest offset that there is; a negative one means the end.
    [[nodiscard]] int within(int offset) const;
};

} // namespace zentrill
