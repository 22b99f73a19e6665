#include "ui/models/FoldedLogModel.h"

#include "controller/LogClock.h"

#include <QLocale>

#include <vector>

namespace zentrill {

namespace {

struct Run {
    int firstLine = 0;
    int lines = 0;
};

/// "30,000 paths".
QString grouped(int number) {
    return QLocale(QLocale::English, QLocale::UnitedStates).toString(number);
}

} // namespace

FoldedLogModel::FoldedLogModel(const LogListModel& lines, QObject* parent)
    : TextLinesModel(parent), lines_(lines) {
    connect(&lines, &QAbstractItemModel::rowsInserted, this, &FoldedLogModel::take);
    connect(&lines, &QAbstractItemModel::modelAboutToBeReset, this, [this] { beginResetModel(); });
    connect(&lines, &QAbstractItemModel::modelReset, this, [this] {
        folds_.clear();
        lineCount_ = 0;
        runBegin_ = 0;
        endResetModel();
    });
    show();
}

int FoldedLogModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : folds_.rowCount(lineCount_);
}

QString FoldedLogModel::entry(int row) const {
    const LineFolds::Fold* fold = headed(row);
    if (fold == nullptr) {
        return lines_.entry(folds_.lineOf(row));
    }
    const auto stamp = static_cast<qsizetype>(LogClock::roomFor({}).size());
    return lines_.entry(fold->firstLine).left(stamp) +
           QStringLiteral("[Safety Shield] %1 paths preserved…").arg(grouped(fold->lines));
}

bool FoldedLogModel::isListed(int row) const {
    return folds_.foldOfRow(row) != nullptr && headed(row) == nullptr;
}

int FoldedLogModel::firstLine(int row) const {
    return folds_.lineOf(row);
}

int FoldedLogModel::lastLine(int row) const {
    const LineFolds::Fold* fold = headed(row);
    return fold != nullptr && !fold->open ? fold->lastLine() : folds_.lineOf(row);
}

TextLinesModel::Fold FoldedLogModel::fold(int row) const {
    const LineFolds::Fold* fold = headed(row);
    if (fold == nullptr) {
        return Fold::none;
    }
    return fold->open ? Fold::open : Fold::closed;
}

void FoldedLogModel::toggle(int row) {
    if (const LineFolds::Fold* fold = headed(row)) {
        setOpen(row, !fold->open);
    }
}

int FoldedLogModel::reveal(int line) {
    if (const LineFolds::Fold* fold = folds_.foldOfLine(line)) {
        setOpen(fold->row, true);
    }
    return folds_.rowOf(line);
}

const LineFolds::Fold* FoldedLogModel::headed(int row) const {
    const LineFolds::Fold* fold = folds_.foldOfRow(row);
    return fold != nullptr && fold->row == row ? fold : nullptr;
}

void FoldedLogModel::take() {
    int end = lineCount_;
    while (end < lines_.rowCount() && lines_.isPreservedPath(end)) {
        ++end;
    }
    if (end > lineCount_) {
        goOn(end);
    }
    show();
}

void FoldedLogModel::goOn(int end) {
    const int added = end - lineCount_;
    if (folds_.lastEndsBefore(lineCount_)) {
        const LineFolds::Fold& last = folds_.last();
        if (last.open) {
            beginInsertRows({}, last.lastRow() + 1, last.lastRow() + added);
        }
        folds_.growLast(added);
        lineCount_ = end;
        runBegin_ = end;
        if (last.open) {
            endInsertRows();
        }
        Q_EMIT dataChanged(index(last.row), index(last.row));
    } else if (end - runBegin_ >= fewestFolded && runBegin_ < lineCount_) {
        // They are shown again, together with those that follow.
        beginRemoveRows({}, folds_.rowOf(runBegin_), rowCount() - 1);
        lineCount_ = runBegin_;
        endRemoveRows();
    }
}

/// Shows the new lines, none of which continues what is there.
void FoldedLogModel::show() {
    const int count = lines_.rowCount();
    std::vector<Run> folded;
    int rows = count - lineCount_;
    int run = runBegin_;
    const auto fold = [&](int end) {
        if (end - run >= fewestFolded) {
            folded.push_back({.firstLine = run, .lines = end - run});
            rows -= end - run - 1;
            run = end;
        }
    };
    for (int line = lineCount_; line < count; ++line) {
        if (!lines_.isPreservedPath(line)) {
            fold(line);
            run = line + 1;
        }
    }
    fold(count);
    if (rows > 0) {
        beginInsertRows({}, rowCount(), rowCount() + rows - 1);
        for (const Run& lines : folded) {
            folds_.add(lines.firstLine, lines.lines);
        }
        lineCount_ = count;
        runBegin_ = run;
        endInsertRows();
    }
}

void FoldedLogModel::setOpen(int row, bool open) {
    const LineFolds::Fold fold = *headed(row);
    if (fold.open == open) {
        return;
    }
    if (open) {
        beginInsertRows({}, row + 1, row + fold.lines);
    } else {
        beginRemoveRows({}, row + 1, row + fold.lines);
    }
    folds_.setOpen(row, open);
    if (open) {
        endInsertRows();
    } else {
        endRemoveRows();
    }
    Q_EMIT dataChanged(index(row), index(row));
}

} // namespace zentrill
