#pragma once

#include <QTimer>

#include <algorithm>
#include <ctime>

namespace zentrill::bench {

/// Ticks in every turn of the event loop and remembers the longest time between two ticks, by the clock on
/// the wall and by the processor time that the main thread itself used.
class Heartbeat {
public:
    Heartbeat() {
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { tick(); });
        timer_.start(0);
    }

    /// In seconds.
    [[nodiscard]] double longest() const { return longest_; }

    /// In seconds.
    [[nodiscard]] double longestUse() const { return longestUse_; }

private:
    static double read(clockid_t clock) {
        timespec now{};
        ::clock_gettime(clock, &now);
        return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
    }

    void tick() {
        longest_ = std::max(longest_, read(CLOCK_MONOTONIC) - last_);
        longestUse_ = std::max(longestUse_, read(CLOCK_THREAD_CPUTIME_ID) - lastUse_);
        last_ = read(CLOCK_MONOTONIC);
        lastUse_ = read(CLOCK_THREAD_CPUTIME_ID);
    }

    QTimer timer_;
    double last_ = read(CLOCK_MONOTONIC);
    double lastUse_ = read(CLOCK_THREAD_CPUTIME_ID);
    double longest_ = 0;
    double longestUse_ = 0;
};

} // namespace zentrill::bench
