#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace zentrill::confinement {

/// A way to keep a process from changing anything outside its own folders.
enum class Rung {
    /// A mount namespace in which everything else is read-only: as root, or through a user namespace.
    namespaces,
    /// The kernel refuses to create, write, rename, link or remove anything else; needs no right at all.
    landlock,
    /// Root turns into a user that owns nothing else. What everybody may write to stays writable.
    user,
};

/// From the strongest to the weakest.
inline constexpr std::array rungs{Rung::namespaces, Rung::landlock, Rung::user};

[[nodiscard]] constexpr std::string_view nameOf(Rung rung) {
    switch (rung) {
    case Rung::namespaces:
        return "namespaces";
    case Rung::landlock:
        return "landlock";
    case Rung::user:
        break;
    }
    return "user";
}

[[nodiscard]] constexpr std::optional<Rung> rungNamed(std::string_view name) {
    for (const Rung rung : rungs) {
        if (nameOf(rung) == name) {
            return rung;
        }
    }
    return std::nullopt;
}

} // namespace zentrill::confinement
