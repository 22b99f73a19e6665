#pragma once

#include <QAbstractListModel>
#include <QString>

#include <cstdint>

namespace zentrill {

/// Lines of text as a list; only those in sight are made into strings.
class TextLinesModel : public QAbstractListModel {
    Q_OBJECT

public:
    static constexpr int entryRole = Qt::UserRole;
    static constexpr int headingRole = Qt::UserRole + 1;
    static constexpr int listedRole = Qt::UserRole + 2;
    static constexpr int firstLineRole = Qt::UserRole + 3;
    static constexpr int lastLineRole = Qt::UserRole + 4;
    static constexpr int foldedRole = Qt::UserRole + 5;
    static constexpr int openRole = Qt::UserRole + 6;

    /// Whether a row stands for lines that can be shown below it.
    enum class Fold : std::uint8_t { none, closed, open };

    using QAbstractListModel::QAbstractListModel;

    /// The text of a row as it is shown; empty for a row that does not exist.
    [[nodiscard]] virtual QString entry(int row) const = 0;

    /// Whether a row is the heading of a list, and whether it belongs to the list under one.
    [[nodiscard]] virtual bool isHeading(int /*row*/) const { return false; }

    [[nodiscard]] virtual bool isListed(int /*row*/) const { return false; }

    /// The lines of the text that a row stands for; without folds, the one with its number.
    Q_INVOKABLE [[nodiscard]] virtual int firstLine(int row) const { return row; }

    Q_INVOKABLE [[nodiscard]] virtual int lastLine(int row) const { return row; }

    [[nodiscard]] virtual Fold fold(int /*row*/) const { return Fold::none; }

    /// Opens or closes the fold of that row.
    Q_INVOKABLE virtual void toggle(int /*row*/) {}

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
        case firstLineRole:
            return firstLine(index.row());
        case lastLineRole:
            return lastLine(index.row());
        case foldedRole:
            return fold(index.row()) != Fold::none;
        case openRole:
            return fold(index.row()) == Fold::open;
        default:
            return {};
        }
    }

    [[nodiscard]] QHash<int, QByteArray> roleNames() const override {
        return {{entryRole, "entry"},         {headingRole, "isHeading"}, {listedRole, "isListed"},
                {firstLineRole, "firstLine"}, {lastLineRole, "lastLine"}, {foldedRole, "isFold"},
                {openRole, "isOpen"}};
    }
};

} // namespace zentrill
