#include "ui/models/LineFolds.h"

#include <algorithm>

namespace zentrill {

namespace {

/// The last fold whose `member` is not beyond `place`; null if there is none.
const LineFolds::Fold* lastUpTo(const std::vector<LineFolds::Fold>& folds, int place,
                                int LineFolds::Fold::* member) {
    const auto after = std::ranges::upper_bound(folds, place, {}, member);
    return after == folds.begin() ? nullptr : &*(after - 1);
}

} // namespace

int LineFolds::rowCount(int lineCount) const {
    return rowOf(lineCount);
}

const LineFolds::Fold* LineFolds::foldOfRow(int row) const {
    const Fold* fold = lastUpTo(folds_, row, &Fold::row);
    return fold != nullptr && row <= fold->lastRow() ? fold : nullptr;
}

const LineFolds::Fold* LineFolds::foldOfLine(int line) const {
    const Fold* fold = lastUpTo(folds_, line, &Fold::firstLine);
    return fold != nullptr && line <= fold->lastLine() ? fold : nullptr;
}

int LineFolds::lineOf(int row) const {
    const Fold* fold = lastUpTo(folds_, row, &Fold::row);
    if (fold == nullptr) {
        return row;
    }
    if (row > fold->lastRow()) {
        return fold->lastLine() + row - fold->lastRow();
    }
    return row == fold->row ? fold->firstLine : fold->firstLine + row - fold->row - 1;
}

int LineFolds::rowOf(int line) const {
    const Fold* fold = lastUpTo(folds_, line, &Fold::firstLine);
    if (fold == nullptr) {
        return line;
    }
    if (line > fold->lastLine()) {
        return fold->lastRow() + line - fold->lastLine();
    }
    return fold->open ? fold->row + 1 + line - fold->firstLine : fold->row;
}

bool LineFolds::lastEndsBefore(int line) const {
    return !folds_.empty() && last().lastLine() == line - 1;
}

void LineFolds::add(int firstLine, int lines) {
    folds_.push_back({.firstLine = firstLine, .lines = lines, .open = false, .row = rowOf(firstLine)});
}

void LineFolds::setOpen(int row, bool open) {
    const auto fold = std::ranges::lower_bound(folds_, row, {}, &Fold::row);
    if (fold == folds_.end() || fold->row != row || fold->open == open) {
        return;
    }
    fold->open = open;
    const int moved = open ? fold->lines : -fold->lines;
    std::for_each(fold + 1, folds_.end(), [moved](Fold& later) { later.row += moved; });
}

} // namespace zentrill
