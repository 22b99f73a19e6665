#pragma once

#include "catalog/AppInfo.h"
#include "deletion/SafeDeletionEngine.h"
#include "deletion/SafetyShield.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace zentrill {

/// How much the removal of the selected tools takes.
struct SelectionSize {
    /// The logical size of what goes, in bytes, as the review of the same tools has it.
    std::int64_t goingBytes = 0;
    /// Whether everything was looked at; otherwise more goes.
    bool isWhole = true;

    bool operator==(const SelectionSize&) const = default;
};

/// Looks on the calling thread, and changes nothing. What two of the tools share is counted once.
/// `shouldStop` is asked before each entry, on several threads at once; so is the clock, where there is a
/// `patience`.
[[nodiscard]] SelectionSize selectionSize(const std::shared_ptr<const SafeDeletionEngine>& engine,
                                          const std::vector<AppInfo>& tools, SafetyShield shield,
                                          const std::function<bool()>& shouldStop,
                                          std::optional<std::chrono::milliseconds> patience = std::nullopt);

} // namespace zentrill
