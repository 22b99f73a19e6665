#pragma once

#include "ui/models/TextLinesModel.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <algorithm>
#include <compare>

namespace zentrill {

/// A run of selected text across the rows of a list of lines, from an anchor to where the pointer is. It is
/// independent of the rows on the screen, so that scrolling does not change it.
class LineSelection : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by ContentViewState")
    /// Counts the changes; a row that binds to it looks up its part of the selection again.
    Q_PROPERTY(int revision READ revision NOTIFY changed FINAL)
    Q_PROPERTY(bool empty READ isEmpty NOTIFY changed FINAL)
    Q_PROPERTY(int firstRow READ firstRow NOTIFY changed FINAL)

public:
    /// `lines` outlives the selection.
    explicit LineSelection(const TextLinesModel& lines, QObject* parent = nullptr);

    [[nodiscard]] int revision() const { return revision_; }

    [[nodiscard]] bool isEmpty() const;

    /// Where it begins.
    [[nodiscard]] int firstRow() const { return from().row; }

    /// Starts again before the character `column` of `row`; both from 0, and a place beyond the end means the
    /// end.
    Q_INVOKABLE void begin(int row, int column);
    Q_INVOKABLE void extend(int row, int column);
    Q_INVOKABLE void selectWord(int row, int column);
    Q_INVOKABLE void selectAll();
    Q_INVOKABLE void clear();

    /// The selected characters of a row: [startIn, endIn), equal if there are none.
    Q_INVOKABLE [[nodiscard]] int startIn(int row) const;
    Q_INVOKABLE [[nodiscard]] int endIn(int row) const;

    /// The selected text, with line feeds between rows.
    [[nodiscard]] QString text() const;

    /// Copies the text to the clipboard; without a selection the clipboard stays as it is.
    Q_INVOKABLE void copy() const;

Q_SIGNALS:
    void changed();

private:
    struct Place {
        int row = 0;
        int column = 0;

        auto operator<=>(const Place&) const = default;
    };

    [[nodiscard]] Place from() const { return std::min(anchor_, head_); }

    [[nodiscard]] Place to() const { return std::max(anchor_, head_); }

    /// The nearest place that exists in the text.
    [[nodiscard]] Place within(Place place) const;
    void set(Place anchor, Place head);

    const TextLinesModel& lines_;
    Place anchor_;
    Place head_;
    int revision_ = 0;
};

} // namespace zentrill
