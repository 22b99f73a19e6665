#pragma once

#include <QQuickItem>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <algorithm>

namespace zentrill {

/// The text behind the code field. It changes only through single key presses. It takes no input method, no
/// paste, no drop, no undo and no text from assistive tools, because it does not listen to any of them. The
/// view that draws it is read-only.
class ManualCodeTextView : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    // Read-only, because the accessibility bus writes to a property of this name without asking.
    Q_PROPERTY(QString text READ text NOTIFY textChanged FINAL)
    Q_PROPERTY(int cursorPosition READ cursorPosition NOTIFY selectionChanged FINAL)
    Q_PROPERTY(int selectionStart READ selectionStart NOTIFY selectionChanged FINAL)
    Q_PROPERTY(int selectionEnd READ selectionEnd NOTIFY selectionChanged FINAL)

public:
    explicit ManualCodeTextView(QQuickItem* parent = nullptr);

    [[nodiscard]] QString text() const { return text_; }

    /// Takes a text from outside, filtered like any other: the field is emptied when a confirmation opens.
    Q_INVOKABLE void setText(const QString& text);

    [[nodiscard]] int cursorPosition() const { return cursor_; }

    [[nodiscard]] int selectionStart() const { return std::min(anchor_, cursor_); }

    [[nodiscard]] int selectionEnd() const { return std::max(anchor_, cursor_); }

    /// Puts the caret before the character `position`; with `extend` the selection reaches there instead.
    Q_INVOKABLE void moveCursor(int position, bool extend);
    Q_INVOKABLE void selectAll();

Q_SIGNALS:
    /// After every accepted change.
    void textChanged();
    void selectionChanged();
    /// Return or Enter was pressed.
    void accepted();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    /// Replaces the characters from `first` up to `last` by `text`, unless the result breaks a rule.
    void replace(int first, int last, const QString& text);
    bool handleEditing(const QKeyEvent& event);
    bool handleMovement(const QKeyEvent& event);

    QString text_;
    int cursor_ = 0;
    int anchor_ = 0;
};

} // namespace zentrill
