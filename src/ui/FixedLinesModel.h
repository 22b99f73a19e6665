#pragma once

#include "ui/TextLinesModel.h"

#include <QStringList>

namespace zentrill {

/// Lines that are replaced all at once.
class FixedLinesModel : public TextLinesModel {
    Q_OBJECT

public:
    using TextLinesModel::TextLinesModel;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QString entry(int row) const override;

    void setLines(const QStringList& lines);

private:
    QStringList lines_;
};

} // namespace zentrill
