#include "ui/models/LogListModel.h"

#include "controller/ApplicationUninstallFlow.h"
#include "controller/DisplayText.h"
#include "controller/LogClock.h"

#include <string_view>

namespace zentrill {

LogListModel::LogListModel(const UninstallerViewModel& controller, QObject* parent)
    : TextLinesModel(parent), controller_(controller), count_(static_cast<int>(controller.logs().size())) {
    connect(&controller, &UninstallerViewModel::logsAppended, this,
            [this](qsizetype /*first*/, qsizetype count) { append(count); });
    connect(&controller, &UninstallerViewModel::logsCleared, this, &LogListModel::clear);
}

int LogListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count_;
}

QString LogListModel::entry(int row) const {
    // While the clearing is being announced, the rows still exist but the lines do not.
    if (row < 0 || row >= count_ || static_cast<std::size_t>(row) >= controller_.logs().size()) {
        return {};
    }
    return displayMessage(controller_.logs()[static_cast<std::size_t>(row)]);
}

bool LogListModel::isPreservedPath(int row) const {
    static const std::size_t stamp = LogClock::roomFor({}).size();
    const auto& lines = controller_.logs();
    const auto line = static_cast<std::size_t>(row);
    return row >= 0 && line < lines.size() && lines[line].size() >= stamp &&
           std::string_view(lines[line]).substr(stamp).starts_with(preservedPathMark);
}

void LogListModel::append(qsizetype count) {
    beginInsertRows({}, count_, count_ + static_cast<int>(count) - 1);
    count_ += static_cast<int>(count);
    endInsertRows();
}

void LogListModel::clear() {
    beginResetModel();
    count_ = 0;
    endResetModel();
}

} // namespace zentrill
