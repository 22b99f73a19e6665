#include "ui/items/ManualCodeTextView.h"

#include "controller/DestructiveConfirmationCode.h"

#include <QKeyEvent>

namespace zentrill {

namespace {

bool isTypedDigit(const QKeyEvent& event) {
    // One character per event: a longer text does not come from a key. Some keyboards need Shift for digits,
    // and the number pad sets the keypad flag.
    const Qt::KeyboardModifiers others = event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
    const QString text = event.text();
    return others == Qt::NoModifier && text.size() == 1 && text.front() >= QLatin1Char('0') &&
           text.front() <= QLatin1Char('9');
}

} // namespace

ManualCodeTextView::ManualCodeTextView(QQuickItem* parent) : QQuickItem(parent) {
    setActiveFocusOnTab(true);
}

void ManualCodeTextView::setText(const QString& text) {
    const QString filtered =
        QString::fromStdString(DestructiveConfirmationCode::filteredInput(text.toStdString()));
    if (filtered == text_) {
        return;
    }
    text_ = filtered;
    cursor_ = anchor_ = static_cast<int>(text_.size());
    Q_EMIT textChanged();
    Q_EMIT selectionChanged();
}

void ManualCodeTextView::moveCursor(int position, bool extend) {
    cursor_ = std::clamp(position, 0, static_cast<int>(text_.size()));
    if (!extend) {
        anchor_ = cursor_;
    }
    Q_EMIT selectionChanged();
}

void ManualCodeTextView::selectAll() {
    anchor_ = 0;
    moveCursor(static_cast<int>(text_.size()), true);
}

void ManualCodeTextView::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isTypedDigit(*event)) {
        replace(selectionStart(), selectionEnd(), event->text());
    } else if (isReturn) {
        Q_EMIT accepted();
    } else if (!handleEditing(*event) && !handleMovement(*event)) {
        event->ignore();
        return;
    }
    event->accept();
}

void ManualCodeTextView::replace(int first, int last, const QString& text) {
    QString changed = text_;
    changed.replace(first, last - first, text);
    if (changed.size() > static_cast<qsizetype>(DestructiveConfirmationCode::length) || changed == text_) {
        moveCursor(changed == text_ ? first + static_cast<int>(text.size()) : cursor_, changed != text_);
        return;
    }
    text_ = changed;
    cursor_ = anchor_ = first + static_cast<int>(text.size());
    Q_EMIT textChanged();
    Q_EMIT selectionChanged();
}

bool ManualCodeTextView::handleEditing(const QKeyEvent& event) {
    const bool selected = selectionStart() != selectionEnd();
    const auto length = static_cast<int>(text_.size());
    if (event.matches(QKeySequence::DeleteStartOfWord)) {
        replace(selected ? selectionStart() : 0, selectionEnd(), {});
    } else if (event.matches(QKeySequence::DeleteEndOfWord)) {
        replace(selectionStart(), selected ? selectionEnd() : length, {});
    } else if (event.key() == Qt::Key_Backspace) {
        replace(selected ? selectionStart() : std::max(0, cursor_ - 1), selectionEnd(), {});
    } else if (event.matches(QKeySequence::Delete)) {
        replace(selectionStart(), selected ? selectionEnd() : std::min(length, cursor_ + 1), {});
    } else {
        return false;
    }
    return true;
}

bool ManualCodeTextView::handleMovement(const QKeyEvent& event) {
    const bool extend = event.modifiers().testFlag(Qt::ShiftModifier);
    const bool selected = selectionStart() != selectionEnd();
    const bool byWord = event.modifiers().testFlag(Qt::ControlModifier);
    const auto length = static_cast<int>(text_.size());
    if (event.matches(QKeySequence::SelectAll)) {
        selectAll();
    } else if (event.key() == Qt::Key_Home || (event.key() == Qt::Key_Left && byWord)) {
        moveCursor(0, extend);
    } else if (event.key() == Qt::Key_End || (event.key() == Qt::Key_Right && byWord)) {
        moveCursor(length, extend);
    } else if (event.key() == Qt::Key_Left) {
        moveCursor(selected && !extend ? selectionStart() : cursor_ - 1, extend);
    } else if (event.key() == Qt::Key_Right) {
        moveCursor(selected && !extend ? selectionEnd() : cursor_ + 1, extend);
    } else {
        return false;
    }
    return true;
}

} // namespace zentrill
