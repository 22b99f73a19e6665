#pragma once

#include "deletion/PlanRecord.h"

#include <chrono>
#include <mutex>
#include <string>

namespace zentrill {

struct PlanOptions;

/// Passes on what the threads of one plan find, so often that a person sees it grow and so seldom that it
/// costs nothing.
class PlanTeller {
public:
    /// How often `PlanOptions::progress` is told.
    static constexpr std::chrono::milliseconds interval{50};
    /// After so many entries a walk looks whether it is time.
    static constexpr std::size_t entriesBetween = 16;

    /// `options` outlives this object.
    PlanTeller(std::string item, const PlanOptions& options);

    /// Whether anybody listens.
    [[nodiscard]] bool isWanted() const noexcept { return isWanted_; }

    /// Takes what one thread has found since it was here; any thread.
    void gather(PlanRecord news);

    /// Tells what was gathered, whatever the time.
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
