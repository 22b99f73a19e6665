#pragma once

#include "controller/sizes/SelectionSize.h"
#include "models/ModelDeletionPlan.h"

#include <QString>

#include <cstdint>
#include <string>
#include <vector>

namespace zentrill {

/// "1.2 GB would go".
[[nodiscard]] QString selectionSizeText(const SelectionSize& size);

/// What the deletion of a model frees and why that differs from its size; empty if nothing of it stays.
[[nodiscard]] QString modelNote(const ModelDeletionPlan& plan);

/// The paths line by line under a heading, each with its size if `sizes` has one, in bytes.
[[nodiscard]] QString remainingDataNote(const std::vector<std::string>& paths,
                                        const std::vector<std::int64_t>& sizes);

} // namespace zentrill
