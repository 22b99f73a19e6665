#include "ui/models/SearchState.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace zentrill {
namespace {

TEST(SearchState, TellsEachChangeOnce) {
    SearchState state;
    const QSignalSpy searching(&state, &SearchState::searchingChanged);
    const QSignalSpy needle(&state, &SearchState::needleChanged);
    for (int times = 0; times < 2; ++times) {
        state.setSearching(true);
        state.setNeedle(QStringLiteral("claude"));
    }
    EXPECT_TRUE(state.isSearching());
    EXPECT_EQ(state.needle(), QStringLiteral("claude"));
    EXPECT_EQ(searching.count(), 1);
    EXPECT_EQ(needle.count(), 1);
}

TEST(SearchState, ForgetsTheNeedleWhenItIsClosed) {
    SearchState state;
    state.setSearching(true);
    state.setNeedle(QStringLiteral("claude"));
    // Whoever hears of the end finds no needle any more.
    QString left = QStringLiteral("not asked");
    QObject::connect(&state, &SearchState::searchingChanged, [&] { left = state.needle(); });
    const QSignalSpy needle(&state, &SearchState::needleChanged);
    state.setSearching(false);
    EXPECT_FALSE(state.isSearching());
    EXPECT_EQ(left, QString());
    EXPECT_EQ(needle.count(), 1);
}

} // namespace
} // namespace zentrill
