#pragma once

#include <QAbstractListModel>
#include <QString>

namespace zentrill {

/// Lines of text as a list; only those in sight are ever made into strings.
class TextLinesModel : public QAbstractListModel {
    Q_OBJECT

public:
    static constexpr int entryRole = Qt::UserRole;

    using QAbstractListModel::QAbstractListModel;

    /// The text of a row as it is shown; empty for a row that is not there.
    [[nodiscard]] virtual QString entry(int row) const = 0;

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override {
        if (role != entryRole || !checkIndex(index, CheckIndexOption::IndexIsValid)) {
            return {};
        }
        return entry(index.row());
    }

    [[nodiscard]] QHash<int, QByteArray> roleNames() const override { return {{entryRole, "entry"}}; }
};

} // namespace zentrill
