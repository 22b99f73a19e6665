#pragma once

#include "controller/UninstallerViewModel.h"
#include "ui/models/RecordListModel.h"

#include <QAbstractItemModel>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <cstddef>
#include <cstdint>
#include <optional>

namespace zentrill {

/// What the review shows of a selection or a record. It cannot remove anything, follows the Safety Shield,
/// and is closed when an operation begins.
class ReviewState : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by ContentViewState")
    Q_PROPERTY(bool shown READ isShown NOTIFY shownChanged FINAL)
    Q_PROPERTY(QString title READ title NOTIFY shownChanged FINAL)
    /// Whether the Safety Shield makes a difference.
    Q_PROPERTY(bool shielded READ isShielded NOTIFY shownChanged FINAL)
    Q_PROPERTY(bool computing READ isComputing NOTIFY contentChanged FINAL)
    Q_PROPERTY(QString going READ going NOTIFY contentChanged FINAL)
    Q_PROPERTY(QString comingFree READ comingFree NOTIFY contentChanged FINAL)
    Q_PROPERTY(bool canListMore READ canListMore NOTIFY contentChanged FINAL)
    Q_PROPERTY(QAbstractItemModel* rows READ rows CONSTANT FINAL)

public:
    /// `controller` outlives this object.
    explicit ReviewState(UninstallerViewModel& controller, QObject* parent = nullptr);

    [[nodiscard]] bool isShown() const { return subject_.has_value(); }

    [[nodiscard]] QString title() const;
    [[nodiscard]] bool isShielded() const;

    [[nodiscard]] bool isComputing() const { return isShown() && !content_.complete; }

    /// In words; empty as long as nothing is known.
    [[nodiscard]] QString going() const { return content_.going; }

    [[nodiscard]] QString comingFree() const { return content_.comingFree; }

    /// Whether `listMore` would list more, if there is more.
    [[nodiscard]] bool canListMore() const { return content_.complete && listedEntries_ < mostEntries; }

    [[nodiscard]] QAbstractItemModel* rows() { return &rows_; }

    /// Opens the review, unless it is open or an operation runs.
    void open(ReviewSubject subject);

    Q_INVOKABLE void close();

    /// Lists ten times as many entries, at most `mostEntries`. The present list stays until they are known.
    Q_INVOKABLE void listMore();

Q_SIGNALS:
    void shownChanged();
    void contentChanged();

private:
    /// For each item and fate; showing more would block the main thread for too long.
    static constexpr std::size_t mostEntries = 10'000;

    void compute();
    /// Hands what is found of the subject, if there is one, to `show`, or the whole of it alone.
    /// Whether lists that are still growing are shown.
    enum class Growing : std::uint8_t { shown, hidden };

    void start(Growing growing);
    void show(const ReviewContent& content);

    UninstallerViewModel& controller_;
    std::optional<ReviewSubject> subject_;
    std::size_t listedEntries_ = ReviewWorker::firstEntries;
    ReviewContent content_;
    RecordListModel<ReviewRow> rows_;
};

} // namespace zentrill
