#pragma once

#include "models/LocalModel.h"

#include <QString>

#include <cstddef>
#include <vector>

namespace zentrill {

/// "60 models · 812 GB": the sum of the sizes that the rows show. If no size is known, only the number.
[[nodiscard]] QString modelTotals(const std::vector<LocalModel>& models);

/// The same for each source that has models, line by line, and a line that explains the sum.
[[nodiscard]] QString modelTotalsBySource(const std::vector<LocalModel>& models);

/// "3 containers · 12 images".
[[nodiscard]] QString dockerTotals(std::size_t containers, std::size_t images);

/// "12 of 60 shown".
[[nodiscard]] QString shownText(std::size_t shown, std::size_t all);

} // namespace zentrill
