#pragma once

#include "ui/models/LineFolds.h"
#include "ui/models/LogListModel.h"
#include "ui/models/TextLinesModel.h"

namespace zentrill {

/// The activity log as the console shows it: where the Safety Shield has kept many paths one after the other,
/// one row stands for all of these lines until it is opened. The lines themselves stay in the log, where they
/// are selected, copied and searched.
class FoldedLogModel : public TextLinesModel {
    Q_OBJECT

public:
    /// The number of consecutive lines from which on they are folded.
    static constexpr int fewestFolded = 10;

    /// `lines` outlives the model.
    explicit FoldedLogModel(const LogListModel& lines, QObject* parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QString entry(int row) const override;

    [[nodiscard]] bool isListed(int row) const override;
    [[nodiscard]] int firstLine(int row) const override;
    [[nodiscard]] int lastLine(int row) const override;
    [[nodiscard]] Fold fold(int row) const override;

    /// Opens the fold of that row, or closes it.
    void toggle(int row) override;

    /// The row that shows a line, after unfolding it.
    Q_INVOKABLE int reveal(int line);

private:
    /// The fold that this row heads; null for any other row.
    [[nodiscard]] const LineFolds::Fold* headed(int row) const;
    void take();
    /// Adds the lines up to `end`, which continue what is there.
    void goOn(int end);
    void show();
    void setOpen(int row, bool open);

    const LogListModel& lines_;
    LineFolds folds_;
    /// How many lines the rows stand for: it trails the log while a change is being announced.
    int lineCount_ = 0;
    /// The first of the last lines that are still too few to be folded; `lineCount_` if there are none.
    int runBegin_ = 0;
};

} // namespace zentrill
