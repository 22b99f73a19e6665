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
    /// As many lines in a row are folded.
    static constexpr int fewestFolded = 10;

    /// `lines` outlives the model.
    explicit FoldedLogModel(const LogListModel& lines, QObject* parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QString entry(int row) const override;

    [[nodiscard]] bool isListed(int row) const override;
    [[nodiscard]] int firstLine(int row) const override;
    [[nodiscard]] int lastLine(int row) const override;
    [[nodiscard]] Fold fold(int row) const override;

    /// Opens what is folded in that row, or folds it again.
    void toggle(int row) override;

    /// The row that shows a line, which is unfolded for it.
    Q_INVOKABLE int reveal(int line);

private:
    /// The fold whose own row that is; null for any other row.
    [[nodiscard]] const LineFolds::Fold* headed(int row) const;
    void take();
    /// Adds to what is there the lines up to `end`, which go on with it.
    void goOn(int end);
    void show();
    void setOpen(int row, bool open);

    const LogListModel& lines_;
    LineFolds folds_;
    /// How many lines the rows stand for: it trails the log while a change is being announced.
    int lineCount_ = 0;
    /// The first of the last lines that are too few to be folded yet; `lineCount_` where there are none.
    int runBegin_ = 0;
};

} // namespace zentrill
