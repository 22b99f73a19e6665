#include "ui/models/LineSelection.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <limits>

namespace zentrill {

namespace {

constexpr int endOfRow = std::numeric_limits<int>::max();

} // namespace

LineSelection::LineSelection(const TextLinesModel& lines, QObject* parent) : QObject(parent), lines_(lines) {
    connect(&lines, &QAbstractItemModel::modelReset, this, &LineSelection::clear);
}

bool LineSelection::isEmpty() const {
    return anchor_ == head_;
}

void LineSelection::begin(int row, int column) {
    const Place place = within({row, column});
    set(place, place);
}

void LineSelection::extend(int row, int column) {
    set(anchor_, within({row, column}));
}

void LineSelection::selectWord(int row, int column) {
    const QString line = lines_.entry(row);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, line);
    // After the last character, the last word is meant.
    finder.setPosition(std::clamp(column, 0, std::max(0, static_cast<int>(line.size()) - 1)));
    const auto last = static_cast<int>(finder.toNextBoundary());
    const auto first = static_cast<int>(finder.toPreviousBoundary());
    if (last >= 0 && first >= 0) {
        set({row, first}, {row, last});
    }
}

void LineSelection::selectAll() {
    const int rows = lines_.rowCount();
    if (rows > 0) {
        set({}, within({rows - 1, endOfRow}));
    }
}

void LineSelection::clear() {
    set({}, {});
}

int LineSelection::startIn(int row) const {
    if (row < from().row || row > to().row) {
        return 0;
    }
    return row == from().row ? from().column : 0;
}

int LineSelection::endIn(int row) const {
    if (row < from().row || row > to().row) {
        return 0;
    }
    return row == to().row ? to().column : static_cast<int>(lines_.entry(row).size());
}

QString LineSelection::text() const {
    QString result;
    for (int row = from().row; row <= std::min(to().row, lines_.rowCount() - 1); ++row) {
        const QString line = lines_.entry(row);
        const int first = startIn(row);
        const int last = endIn(row);
        if (row > from().row) {
            result += QLatin1Char('\n');
        }
        result += QStringView(line).mid(first, last - first);
    }
    return result;
}

void LineSelection::copy() const {
    if (!isEmpty()) {
        QGuiApplication::clipboard()->setText(text());
    }
}

LineSelection::Place LineSelection::within(Place place) const {
    const int rows = lines_.rowCount();
    if (rows == 0) {
        return {};
    }
    if (place.row >= rows) {
        return {rows - 1, static_cast<int>(lines_.entry(rows - 1).size())};
    }
    if (place.row < 0) {
        return {};
    }
    return {place.row, std::clamp(place.column, 0, static_cast<int>(lines_.entry(place.row).size()))};
}

void LineSelection::set(Place anchor, Place head) {
    if (anchor == anchor_ && head == head_) {
        return;
    }
    anchor_ = anchor;
    head_ = head;
    ++revision_;
    Q_EMIT changed();
}

} // namespace zentrill
