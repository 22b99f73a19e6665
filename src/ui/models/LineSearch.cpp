#include "ui/models/LineSearch.h"

#include <QLocale>

#include <algorithm>

namespace zentrill {

namespace {

/// How much a turn of the event loop has time for.
constexpr int linesPerTurn = 5'000;

QString grouped(std::size_t number) {
    return QLocale(QLocale::English, QLocale::UnitedStates).toString(static_cast<qulonglong>(number));
}

} // namespace

LineSearch::LineSearch(const TextLinesModel& lines, LineSelection& selection, QObject* parent)
    : SearchState(parent), lines_(lines), selection_(selection) {
    turn_.setInterval(0);
    connect(&turn_, &QTimer::timeout, this, &LineSearch::advance);
    connect(this, &SearchState::needleChanged, this, &LineSearch::restart);
    connect(&lines, &QAbstractItemModel::rowsInserted, this, [this] {
        if (!needle().isEmpty()) {
            turn_.start();
        }
    });
    connect(&lines, &QAbstractItemModel::modelReset, this, &LineSearch::restart);
}

QString LineSearch::countText() const {
    if (needle().isEmpty()) {
        return {};
    }
    if (found_.empty()) {
        return turn_.isActive() ? QStringLiteral("Searching…") : QStringLiteral("No line found");
    }
    return QStringLiteral("%1 of %2 %3")
        .arg(grouped(current_ + 1), grouped(found_.size()),
             found_.size() == 1 ? QStringLiteral("line") : QStringLiteral("lines"));
}

void LineSearch::next() {
    if (!found_.empty()) {
        show((current_ + 1) % found_.size());
    }
}

void LineSearch::previous() {
    if (!found_.empty()) {
        show((current_ + found_.size() - 1) % found_.size());
    }
}

void LineSearch::restart() {
    found_.clear();
    read_ = 0;
    current_ = 0;
    if (needle().isEmpty()) {
        turn_.stop();
    } else {
        turn_.start();
    }
    Q_EMIT foundChanged();
}

void LineSearch::advance() {
    const int count = lines_.rowCount();
    const int end = std::min(count, read_ + linesPerTurn);
    const bool foundNone = found_.empty();
    for (; read_ < end; ++read_) {
        if (lines_.entry(read_).contains(needle(), Qt::CaseInsensitive)) {
            found_.push_back(read_);
        }
    }
    if (read_ == count) {
        turn_.stop();
    }
    if (foundNone && !found_.empty()) {
        show(0);
    } else {
        Q_EMIT foundChanged();
    }
}

void LineSearch::show(std::size_t place) {
    current_ = place;
    const int row = found_[place];
    const auto column = static_cast<int>(lines_.entry(row).indexOf(needle(), 0, Qt::CaseInsensitive));
    selection_.begin(row, column);
    selection_.extend(row, column + static_cast<int>(needle().size()));
    Q_EMIT foundChanged();
    Q_EMIT shown(row);
}

} // namespace zentrill
