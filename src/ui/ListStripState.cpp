#include "ui/ListStripState.h"

#include "ui/models/ListSummary.h"

#include <algorithm>

namespace zentrill {

ListStripState::ListStripState(QObject* parent) : SearchState(parent) {
    connect(this, &SearchState::needleChanged, this, &ListStripState::arrangementChanged);
}

QString ListStripState::summary() const {
    return needle().isEmpty() ? totals_ : shownText(shown_, all_);
}

QStringList ListStripState::orderNames() {
    return {QStringLiteral("As scanned"), QStringLiteral("Largest"), QStringLiteral("Name")};
}

void ListStripState::setOrder(int order) {
    const int last = static_cast<int>(orderNames().size()) - 1;
    const auto wanted = static_cast<ListOrder>(std::clamp(order, 0, last));
    if (wanted == order_) {
        return;
    }
    order_ = wanted;
    Q_EMIT orderChanged();
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
