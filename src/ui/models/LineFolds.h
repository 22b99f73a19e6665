#pragma once

#include <vector>

namespace zentrill {

/// The rows of a list of lines, some of which are folded: a row heads each fold, and its lines are shown
/// below while it is open. Lines and rows are numbered from 0.
class LineFolds {
public:
    struct Fold {
        int firstLine = 0;
        int lines = 0;
        bool open = false;
        /// The row that heads it.
        int row = 0;

        [[nodiscard]] int lastLine() const { return firstLine + lines - 1; }

        [[nodiscard]] int lastRow() const { return open ? row + lines : row; }
    };

    [[nodiscard]] int rowCount(int lineCount) const;

    /// The fold that the row heads or shows a line of; null if there is none.
    [[nodiscard]] const Fold* foldOfRow(int row) const;

    /// The fold that has the line; null if there is none.
    [[nodiscard]] const Fold* foldOfLine(int line) const;

    /// The line that the row shows; for a row that heads a fold, the first of its lines.
    [[nodiscard]] int lineOf(int row) const;

    /// The row that shows the line; for a folded line, the one that heads its fold.
    [[nodiscard]] int rowOf(int line) const;

    /// Whether the last fold ends right before that line.
    [[nodiscard]] bool lastEndsBefore(int line) const;

    /// The last fold; there must be one.
    [[nodiscard]] const Fold& last() const { return folds_.back(); }

    /// Folds lines after the last fold.
    void add(int firstLine, int lines);

    /// Adds that many lines to the last fold, which they follow.
    void growLast(int lines) { folds_.back().lines += lines; }

    /// Opens or closes the fold that the row heads.
    void setOpen(int row, bool open);

    void clear() { folds_.clear(); }

private:
    std::vector<Fold> folds_;
};

} // namespace zentrill
