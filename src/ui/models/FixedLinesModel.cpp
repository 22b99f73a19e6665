#include "ui/models/FixedLinesModel.h"

namespace zentrill {

int FixedLinesModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(lines_.size());
}

QString FixedLinesModel::entry(int row) const {
    return lines_.value(row);
}

void FixedLinesModel::setLines(const QStringList& lines, int heading) {
    if (lines == lines_ && heading == heading_) {
        return;
    }
    beginResetModel();
    lines_ = lines;
    heading_ = heading;
    endResetModel();
}

} // namespace zentrill
