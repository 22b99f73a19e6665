#pragma once

#include "ui/models/ListDifference.h"

#include <QAbstractListModel>
#include <QByteArray>
#include <QHash>
#include <QVariant>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace zentrill {

/// Shows a list of records to QML through a table of roles. It takes over a new list as the smallest set of
/// removals, insertions and changes, so that a view keeps its scroll position and builds only new rows. A
/// reordered list replaces the old one as a whole, because thousands of small steps would block the view.
///
///     RecordListModel<LocalModel> models(&LocalModel::id, {{"name", [](const LocalModel& m) { … }}});
///     models.setRecords(found);
template <typename Record>
class RecordListModel : public QAbstractListModel {
public:
    struct Role {
        QByteArray name;
        std::function<QVariant(const Record&)> value;
    };

    /// What stays the same when the rest of a record changes.
    using Key = std::function<std::string(const Record&)>;

    RecordListModel(Key key, std::vector<Role> roles, QObject* parent = nullptr)
        : QAbstractListModel(parent), key_(std::move(key)), roles_(std::move(roles)) {}

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(records_.size());
    }

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override {
        const auto roleIndex = static_cast<std::size_t>(role - firstRole);
        if (!checkIndex(index, CheckIndexOption::IndexIsValid) || role < firstRole ||
            roleIndex >= roles_.size()) {
            return {};
        }
        return roles_[roleIndex].value(records_[static_cast<std::size_t>(index.row())]);
    }

    [[nodiscard]] QHash<int, QByteArray> roleNames() const override {
        QHash<int, QByteArray> names;
        int role = firstRole;
        for (const Role& entry : roles_) {
            names.insert(role++, entry.name);
        }
        return names;
    }

    [[nodiscard]] const std::vector<Record>& records() const noexcept { return records_; }

    /// The record of a row, or nothing if the row does not exist.
    [[nodiscard]] const Record* record(int row) const noexcept {
        return row >= 0 && row < rowCount() ? &records_[static_cast<std::size_t>(row)] : nullptr;
    }

    void setRecords(const std::vector<Record>& records) {
        const ListDifference difference = listDifference(keys(records_), keys(records));
        if (difference.removals.size() + difference.insertions.size() > mostSteps) {
            beginResetModel();
            records_ = records;
            endResetModel();
            return;
        }
        for (const ListRange& range : difference.removals) {
            beginRemoveRows({}, static_cast<int>(range.first), static_cast<int>(range.last()));
            const auto begin = records_.begin() + static_cast<std::ptrdiff_t>(range.first);
            records_.erase(begin, begin + static_cast<std::ptrdiff_t>(range.count));
            endRemoveRows();
        }
        for (const ListRange& range : difference.insertions) {
            beginInsertRows({}, static_cast<int>(range.first), static_cast<int>(range.last()));
            const auto source = records.begin() + static_cast<std::ptrdiff_t>(range.first);
            records_.insert(records_.begin() + static_cast<std::ptrdiff_t>(range.first), source,
                            source + static_cast<std::ptrdiff_t>(range.count));
            endInsertRows();
        }
        updateChanged(records);
    }

private:
    static constexpr int firstRole = Qt::UserRole;
    /// More than installing or removing something changes, but still faster than a reset.
    static constexpr std::size_t mostSteps = 64;

    [[nodiscard]] std::vector<std::string> keys(const std::vector<Record>& records) const {
        std::vector<std::string> result;
        result.reserve(records.size());
        for (const Record& record : records) {
            result.push_back(key_(record));
        }
        return result;
    }

    /// Takes over records with the same key and other content, with one signal for each run of them.
    void updateChanged(const std::vector<Record>& records) {
        std::size_t row = 0;
        while (row < records.size()) {
            const std::size_t first = row;
            while (row < records.size() && !(records_[row] == records[row])) {
                records_[row] = records[row];
                ++row;
            }
            if (row > first) {
                Q_EMIT dataChanged(index(static_cast<int>(first)), index(static_cast<int>(row) - 1));
            } else {
                ++row;
            }
        }
    }

    Key key_;
    std::vector<Role> roles_;
    std::vector<Record> records_;
};

} // namespace zentrill
