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

/// Finds the lines that hold a text, whatever the case of letters, and steps through them: the text at hand
/// is selected. A long list is read bit by bit between the turns of the event loop; what is appended is
/// searched as well.
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

    /// To the next line, or the one before; after the last comes the first.
    Q_INVOKABLE void next();
    Q_INVOKABLE void previous();

Q_SIGNALS:
    void foundChanged();
    /// The text of that row is selected and wants to be seen.
    void shown(int row);

private:
    /// Begins at the first line that holds the needle.
    void restart();
    /// Reads some more lines.
    void advance();
    void show(std::size_t place);

    const TextLinesModel& lines_;
    LineSelection& selection_;
    QTimer turn_;
    /// The rows that hold it, of the first `read_` ones.
    std::vector<int> found_;
    int read_ = 0;
    /// Which of them is at hand, while there is one.
    std::size_t current_ = 0;
};

} // namespace zentrill
