#include "ui/ListStripState.h"

#include "ui/models/ListSummary.h"

#include <algorithm>

namespace zentrill {

QString ListStripState::summary() const {
    return needle().isEmpty() ? totals_ : shownText(shown_, all_);
}

QStringList ListStripState::orderNames() {
    return {QStringLiteral("As scanned"), QStringLiteral("Largest"), QStringLiteral("Name")};
}

void ListStripState::setOrder(int order) {
    const int last = static_cast<int>(orderNames().size()) - 1;
    const auto wanted = static_cast<ListOrder>(std::clamp(order, 0, last));
    if (wanted == arrangement_.order) {
        return;
    }
    arrangement_.order = wanted;
    Q_EMIT orderChanged();
    Q_EMIT arrangementChanged();
}

void ListStripState::setSearching(bool searching) {
    if (searching == searching_) {
        return;
    }
    searching_ = searching;
    if (!searching) {
        setNeedle({});
    }
    Q_EMIT searchingChanged();
}

void ListStripState::setNeedle(const QString& needle) {
    if (needle == arrangement_.needle) {
        return;
    }
    arrangement_.needle = needle;
    Q_EMIT needleChanged();
    Q_EMIT arrangementChanged();
}

void ListStripState::setSummary(const QString& totals, const QString& detail, std::size_t shown,
                                std::size_t all) {
    totals_ = totals;
    detail_ = detail;
    shown_ = shown;
    all_ = all;
    Q_EMIT summaryChanged();
}

} // namespace zentrill
