#include "ForcedRung.h"

#include "support/confinement/Confinement.h"
#include "support/confinement/Trial.h"

#include <cstdlib>

namespace zentrill::test {

void takeRung(confinement::Rung rung) {
    ::unsetenv("ZENTRILL_CONFINED");
    ::setenv("ZENTRILL_CONFINEMENT", std::string(nameOf(rung)).c_str(), 1);
    static_cast<void>(confinement::confineThisProcess());
}

std::optional<std::string> rungObstacle(confinement::Rung rung) {
    if (const auto failure = confinement::failureInChild([rung] { takeRung(rung); })) {
        return "needs the rung: " + *failure;
    }
    return std::nullopt;
}

std::vector<confinement::Rung> allowedRungs() {
    std::vector<confinement::Rung> allowed;
    for (const confinement::Rung rung : confinement::rungs) {
        if (!rungObstacle(rung)) {
            allowed.push_back(rung);
        }
    }
    return allowed;
}

} // namespace zentrill::test
