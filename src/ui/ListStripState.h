#pragma once

#include "ui/models/Arrangement.h"
#include "ui/models/SearchState.h"

#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace zentrill {

/// The strip at the foot of a list: what it says about the list, and how the person has arranged it. It is
/// not saved.
class ListStripState : public SearchState {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by ContentViewState")
    Q_PROPERTY(bool shown READ isShown NOTIFY summaryChanged FINAL)
    Q_PROPERTY(QString summary READ summary NOTIFY summaryChanged FINAL)
    Q_PROPERTY(QString detail READ detail NOTIFY summaryChanged FINAL)
    Q_PROPERTY(bool findsNothing READ findsNothing NOTIFY summaryChanged FINAL)
    Q_PROPERTY(QStringList orderNames READ orderNames CONSTANT FINAL)
    Q_PROPERTY(int order READ order WRITE setOrder NOTIFY orderChanged FINAL)

public:
    explicit ListStripState(QObject* parent = nullptr);

    /// Without a needle everything is shown.
    [[nodiscard]] Arrangement arrangement() const { return {.order = order_, .needle = needle()}; }

    /// Whether there is a list to say something about.
    [[nodiscard]] bool isShown() const { return all_ > 0; }

    /// What the list has or, during a search, how much of it is shown.
    [[nodiscard]] QString summary() const;

    /// What the tooltip adds to it; may be empty.
    [[nodiscard]] QString detail() const { return detail_; }

    /// Whether the list has something, but nothing that the search finds.
    [[nodiscard]] bool findsNothing() const { return all_ > 0 && shown_ == 0; }

    /// "As scanned", "Largest", "Name", in the order of `ListOrder`.
    [[nodiscard]] static QStringList orderNames();

    [[nodiscard]] int order() const { return static_cast<int>(order_); }

    /// The index of one of `orderNames`; others are ignored.
    void setOrder(int order);

    /// Takes what the list has now: the texts for all of it and for the tooltip, and how many records are
    /// shown.
    void setSummary(const QString& totals, const QString& detail, std::size_t shown, std::size_t all);

Q_SIGNALS:
    void summaryChanged();
    void orderChanged();
    /// The list has to be arranged anew.
    void arrangementChanged();

private:
    ListOrder order_ = ListOrder::asScanned;
    QString totals_;
    QString detail_;
    std::size_t shown_ = 0;
    std::size_t all_ = 0;
};

} // namespace zentrill
