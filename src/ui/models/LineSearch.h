#pragma once

#include "ui/models/LineSelection.h"
#include "ui/models/SearchState.h"
#include "ui/models/TextLinesModel.h"

#include <QString>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <cstddef>
#include <vector>

namespace zentrill {

/// Finds the lines that contain a text, without regard to case, and steps through them, selecting the current
/// one. A long list is searched in parts between the turns of the event loop; appended lines are searched as
/// well.
class LineSearch : public SearchState {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by ContentViewState")
    Q_PROPERTY(QString countText READ countText NOTIFY foundChanged FINAL)
    Q_PROPERTY(bool findsAny READ findsAny NOTIFY foundChanged FINAL)

public:
    /// Both outlive the search.
    LineSearch(const TextLinesModel& lines, LineSelection& selection, QObject* parent = nullptr);

    /// "3 of 12 lines", "No line found"; empty without a needle.
    [[nodiscard]] QString countText() const;

    [[nodiscard]] bool findsAny() const { return !found_.empty(); }

    /// Goes to the next or the previous line; after the last comes the first.
    Q_INVOKABLE void next();
    Q_INVOKABLE void previous();

Q_SIGNALS:
    void foundChanged();
    /// The text of that row is selected and should be scrolled into view.
    void shown(int row);

private:
    /// Starts with the first line that contains the needle.
    void restart();
    /// Searches some more lines.
    void advance();
    void show(std::size_t place);

    const TextLinesModel& lines_;
    LineSelection& selection_;
    QTimer turn_;
    /// The rows that contain it, among the first `read_` ones.
    std::vector<int> found_;
    int read_ = 0;
    /// The index of the current one, if there is one.
    std::size_t current_ = 0;
};

} // namespace zentrill
