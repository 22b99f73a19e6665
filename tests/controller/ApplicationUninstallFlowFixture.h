#pragma once

#include "ControllerFixture.h"
#include "controller/ApplicationUninstallFlow.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace zentrill::test {

/// A controller whose lists have been filled, and the folders of a tool.
class ApplicationUninstallFlowFixture : public ControllerFixture {
protected:
    void startScanned() {
        start();
        controller_->scanSystem();
        ASSERT_TRUE(waitUntilIdle());
        controller_->clearLogs();
    }

    [[nodiscard]] bool exists(std::string_view relative) const {
        return FileSystem::shared().itemExistsWithoutFollowingSymlink(home_.path(relative));
    }

    [[nodiscard]] std::vector<AppInfo> targets(const std::vector<std::string>& names) const {
        std::vector<AppInfo> apps;
        std::ranges::transform(names, std::back_inserter(apps),
                               [this](const auto& name) { return app(name); });
        return apps;
    }

    /// For calls without the controller; `log` gets the lines.
    [[nodiscard]] OperationContext context(std::function<void(std::string)> log) const {
        OperationContext context;
        context.commandRunner = commands_;
        context.deletionEngine = engine_;
        context.log = std::move(log);
        context.isCancelled = [] { return false; };
        context.isAbandoned = [] { return false; };
        return context;
    }

    static constexpr const char* support = "Library/Application Support/VendorApp";
    static constexpr const char* caches = "Library/Caches/com.vendor.app";
};

} // namespace zentrill::test
