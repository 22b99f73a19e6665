#pragma once

#include <vector>

namespace zentrill {

/// Which rows a list of lines has, of which some are folded into one row each: the fold's own, below which
/// its lines are shown while it is open. Lines and rows count from 0 on.
class LineFolds {
public:
    struct Fold {
        int firstLine = 0;
        int lines = 0;
        bool open = false;
        /// Its own row.
        int row = 0;

        [[nodiscard]] int lastLine() const { return firstLine + lines - 1; }

        [[nodiscard]] int lastRow() const { return open ? row + lines : row; }
    };

    [[nodiscard]] int rowCount(int lineCount) const;

    /// The fold to which that row belongs, as its own or as one of its lines; null where there is none.
    [[nodiscard]] const Fold* foldOfRow(int row) const;

    /// The fold in which that line is; null where there is none.
    [[nodiscard]] const Fold* foldOfLine(int line) const;

    /// The line that the row shows; of a fold's own row the first one.
    [[nodiscard]] int lineOf(int row) const;

    /// The row that shows the line; of a line that is folded the fold's own.
    [[nodiscard]] int rowOf(int line) const;

    /// Whether the last fold ends right before that line.
    [[nodiscard]] bool lastEndsBefore(int line) const;

    /// The last fold; there is one.
    [[nodiscard]] const Fold& last() const { return folds_.back(); }

    /// Folds lines behind the last fold.
    void add(int firstLine, int lines);

    /// Adds as many lines to the last fold, whose lines they follow.
    void growLast(int lines) { folds_.back().lines += lines; }

    /// Opens or closes the fold whose own row that is.
    void setOpen(int row, bool open);

    void clear() { folds_.clear(); }

private:
    std::vector<Fold> folds_;
};

} // namespace zentrill
