#pragma once

#include "controller/UninstallerViewModel.h"
#include "ui/models/TextLinesModel.h"

namespace zentrill {

/// The activity log, directly from the controller: only the rows in sight are copied.
class LogListModel : public TextLinesModel {
    Q_OBJECT

public:
    /// `controller` outlives the model.
    explicit LogListModel(const UninstallerViewModel& controller, QObject* parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QString entry(int row) const override;

    /// Whether the line names a path that the Safety Shield has kept.
    [[nodiscard]] bool isPreservedPath(int row) const;

private:
    void append(qsizetype count);
    void clear();

    const UninstallerViewModel& controller_;
    /// How many rows the views know of: it trails the log while a change is being announced.
    int count_;
};

} // namespace zentrill
