#include "ui/models/SearchState.h"

namespace zentrill {

void SearchState::setSearching(bool searching) {
    if (searching == searching_) {
        return;
    }
    searching_ = searching;
    if (!searching) {
        setNeedle({});
    }
    Q_EMIT searchingChanged();
}

void SearchState::setNeedle(const QString& needle) {
    if (needle == needle_) {
        return;
    }
    needle_ = needle;
    Q_EMIT needleChanged();
}

} // namespace zentrill
