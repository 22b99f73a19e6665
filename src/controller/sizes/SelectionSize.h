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
    /// The logical size of what goes, in bytes; the same as in the review of these tools.
    std::int64_t goingBytes = 0;
    /// Whether everything was looked at; otherwise more goes.
    bool isWhole = true;

    bool operator==(const SelectionSize&) const = default;
};

/// Computed on the calling thread, without changing anything. What two tools share is counted once.
/// `shouldStop` is asked before each entry, on several threads at once. With a `patience` it ends after that
/// time.
[[nodiscard]] SelectionSize selectionSize(const std::shared_ptr<const SafeDeletionEngine>& engine,
                                          const std::vector<AppInfo>& tools, SafetyShield shield,
                                          const std::function<bool()>& shouldStop,
                                          std::optional<std::chrono::milliseconds> patience = std::nullopt);

} // namespace zentrill
