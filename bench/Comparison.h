#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

namespace zentrill::bench {

/// The wall-clock time of one call, in seconds.
template <typename Body>
[[nodiscard]] double secondsOf(Body&& body) {
    const auto start = std::chrono::steady_clock::now();
    body();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

[[nodiscard]] inline double median(std::vector<double> samples) {
    const auto middle = samples.begin() + static_cast<std::ptrdiff_t>(samples.size() / 2);
    std::nth_element(samples.begin(), middle, samples.end());
    return *middle;
}

/// One figure of ours against the same of a peer, both in seconds. Passes when ours is at most `target` times
/// the peer's.
struct Comparison {
    std::string bench;
    std::string peer;
    double ours = 0;
    double theirs = 0;
    double target = 1;

    [[nodiscard]] double ratio() const { return ours / theirs; }

    [[nodiscard]] bool passes() const { return ratio() <= target; }

    /// Prints one line of JSON and returns whether the comparison passes.
    bool report() const {
        std::printf("{\"bench\":\"%s\",\"peer\":\"%s\",\"ours\":%.9f,\"theirs\":%.9f,\"ratio\":%.3f,"
                    "\"target\":%.3f,\"pass\":%s}\n",
                    bench.c_str(), peer.c_str(), ours, theirs, ratio(), target, passes() ? "true" : "false");
        return passes();
    }
};

} // namespace zentrill::bench
