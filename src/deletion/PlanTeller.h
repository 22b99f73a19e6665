#pragma once

#include "deletion/PlanRecord.h"

#include <chrono>
#include <mutex>
#include <string>

namespace zentrill {

struct PlanOptions;

/// Passes on what the threads of one plan find: often enough for a person to see it grow, seldom enough to
/// cost nothing.
class PlanTeller {
public:
    /// The time between two calls of `PlanOptions::progress`.
    static constexpr std::chrono::milliseconds interval{50};
    /// How many entries a walk handles between two looks at the clock.
    static constexpr std::size_t entriesBetween = 16;

    /// `options` outlives this object.
    PlanTeller(std::string item, const PlanOptions& options);

    /// Whether anybody listens.
    [[nodiscard]] bool isWanted() const noexcept { return isWanted_; }

    /// Takes what one thread has found since its last call. Safe on any thread.
    void gather(PlanRecord news);

    /// Passes on what was gathered, without regard to the time.
    void tellAll();

private:
    void tell();

    std::string item_;
    const PlanOptions& options_;
    bool isWanted_;
    std::mutex mutex_;
    PlanRecord gathered_;
    std::chrono::steady_clock::time_point lastTold_;
};

} // namespace zentrill
