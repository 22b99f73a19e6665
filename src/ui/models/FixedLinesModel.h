#pragma once

#include "ui/models/TextLinesModel.h"

#include <QStringList>

namespace zentrill {

/// Lines that are replaced all at once.
class FixedLinesModel : public TextLinesModel {
    Q_OBJECT

public:
    using TextLinesModel::TextLinesModel;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QString entry(int row) const override;

    [[nodiscard]] bool isHeading(int row) const override { return row == heading_; }

    [[nodiscard]] bool isListed(int row) const override { return heading_ >= 0 && row > heading_; }

    /// `heading` is the row under which all following ones are listed; none if negative.
    void setLines(const QStringList& lines, int heading = -1);

private:
    QStringList lines_;
    int heading_ = -1;
};

} // namespace zentrill
