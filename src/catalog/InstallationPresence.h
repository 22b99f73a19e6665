#pragma once

namespace zentrill {

/// The installation detector's verdict on one tool.
enum class InstallationPresence {
    /// Neither an installed path nor residual data exists.
    absent,
    /// At least one installed path (an executable, a bundle) exists.
    installed,
    /// The tool is gone and only its configuration or data remain.
    residualData,
};

} // namespace zentrill
