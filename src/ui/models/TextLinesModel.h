#pragma once

#include <QAbstractListModel>
#include <QString>

namespace zentrill {

/// Lines of text as a list; only those in sight are ever made into strings.
class TextLinesModel : public QAbstractListModel {
    Q_OBJECT

public:
    static constexpr int entryRole = Qt::UserRole;
    static constexpr int headingRole = Qt::UserRole + 1;
    static constexpr int listedRole = Qt::UserRole + 2;

    using QAbstractListModel::QAbstractListModel;

    /// The text of a row as it is shown; empty for a row that is not there.
    [[nodiscard]] virtual QString entry(int row) const = 0;

    /// Whether a row is the heading of a list, and whether it belongs to the list under one.
    [[nodiscard]] virtual bool isHeading(int /*row*/) const { return false; }

    [[nodiscard]] virtual bool isListed(int /*row*/) const { return false; }

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override {
        if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
            return {};
        }
        switch (role) {
        case entryRole:
            return entry(index.row());
        case headingRole:
            return isHeading(index.row());
        case listedRole:
            return isListed(index.row());
        default:
            return {};
        }
    }

    [[nodiscard]] QHash<int, QByteArray> roleNames() const override {
        return {{entryRole, "entry"}, {headingRole, "isHeading"}, {listedRole, "isListed"}};
    }
};

} // namespace zentrill
