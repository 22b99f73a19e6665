#pragma once

#include "DeletionForm.h"
#include "catalog/ApplicationDetectionRegistry.h"
#include "deletion/ApplicationUninstallService.h"
#include "platform/Paths.h"
#include "support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace zentrill::test {

inline bool nothingRuns(const std::vector<std::string>& /*processNames*/) {
    return false;
}

inline const ApplicationDetectionRule& rule(const char* name) {
    return ApplicationDetectionRegistry::rule(name);
}

/// A home folder and a root of the system folders, both the test's own.
class UninstallFixture : public testing::Test {
protected:
    [[nodiscard]] std::string expanded(const std::string& path) const {
        return path.starts_with('~') ? paths::expandingTilde(path, home.path()) : system.path() + path;
    }

    [[nodiscard]] PathExpander expander() const {
        return [this](const std::string& path) { return expanded(path); };
    }

    /// Makes a file at the place of a catalog path and returns where it is.
    std::string make(const std::string& path, const std::string& content = "x") const {
        return path.starts_with("~/") ? home.makeFile(path.substr(2), content)
                                      : system.makeFile(path.substr(1), content);
    }

    [[nodiscard]] ApplicationUninstallResult uninstall(const char* name, bool preserveCredentials) const {
        return quietService().uninstall(rule(name), preserveCredentials, expander());
    }

    /// Over the real file system, with no process of any name running.
    static ApplicationUninstallService quietService(SafeDeletionEngine::DeletionPredicate mayRemove = {}) {
        return ApplicationUninstallService(
            std::make_shared<SafeDeletionEngine>(newEngine(std::move(mayRemove))), InstallationDetector(),
            nothingRuns);
    }

    TemporaryHome home;
    TemporaryDirectory system;
};

} // namespace zentrill::test
