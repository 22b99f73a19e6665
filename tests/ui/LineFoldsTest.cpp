#include "ui/models/LineFolds.h"

#include <gtest/gtest.h>

#include <vector>

namespace zentrill {
namespace {

/// 50 lines, of which 10 to 19 and 30 to 34 are folded.
class LineFoldsTest : public testing::Test {
protected:
    LineFoldsTest() {
        folds_.add(10, 10);
        folds_.add(30, 5);
    }

    /// The line of each row; of a fold's own row its first line with a minus.
    [[nodiscard]] std::vector<int> shown() const {
        std::vector<int> lines;
        for (int row = 0; row < folds_.rowCount(lineCount); ++row) {
            const LineFolds::Fold* fold = folds_.foldOfRow(row);
            const bool isOwn = fold != nullptr && fold->row == row;
            lines.push_back(isOwn ? -folds_.lineOf(row) : folds_.lineOf(row));
        }
        return lines;
    }

    static constexpr int lineCount = 50;
    LineFolds folds_;
};

void addLines(std::vector<int>& lines, int from, int to) {
    for (int line = from; line <= to; ++line) {
        lines.push_back(line);
    }
}

TEST_F(LineFoldsTest, HasARowForEachFold) {
    std::vector<int> expected;
    addLines(expected, 0, 9);
    expected.push_back(-10);
    addLines(expected, 20, 29);
    expected.push_back(-30);
    addLines(expected, 35, 49);
    EXPECT_EQ(shown(), expected);
}

TEST_F(LineFoldsTest, ShowsTheLinesOfAnOpenFoldBelowIt) {
    folds_.setOpen(10, true);
    std::vector<int> expected;
    addLines(expected, 0, 9);
    expected.push_back(-10);
    addLines(expected, 10, 29);
    expected.push_back(-30);
    addLines(expected, 35, 49);
    EXPECT_EQ(shown(), expected);
    folds_.setOpen(31, true);
    EXPECT_EQ(folds_.rowCount(lineCount), lineCount + 2);
    folds_.setOpen(10, false);
    folds_.setOpen(21, false);
    EXPECT_EQ(folds_.rowCount(lineCount), lineCount - 13);
    folds_.setOpen(5, true); // No fold's own row.
    EXPECT_EQ(folds_.rowCount(lineCount), lineCount - 13);
}

TEST_F(LineFoldsTest, FindsTheRowOfEachLine) {
    for (const bool open : {false, true}) {
        folds_.setOpen(10, open);
        for (int line = 0; line < lineCount; ++line) {
            const int row = folds_.rowOf(line);
            const LineFolds::Fold* fold = folds_.foldOfLine(line);
            EXPECT_EQ(fold != nullptr, (line >= 10 && line <= 19) || (line >= 30 && line <= 34)) << line;
            if (fold != nullptr && !fold->open) {
                EXPECT_EQ(row, fold->row) << line;
            } else {
                EXPECT_EQ(folds_.lineOf(row), line);
            }
        }
    }
}

TEST_F(LineFoldsTest, GrowsAtItsEnd) {
    EXPECT_TRUE(folds_.lastEndsBefore(35));
    EXPECT_FALSE(folds_.lastEndsBefore(36));
    folds_.growLast(3);
    EXPECT_TRUE(folds_.lastEndsBefore(38));
    EXPECT_EQ(folds_.rowCount(lineCount), lineCount - 9 - 7);
    folds_.clear();
    EXPECT_FALSE(folds_.lastEndsBefore(0));
    EXPECT_EQ(folds_.rowCount(lineCount), lineCount);
}

} // namespace
} // namespace zentrill
