#include "controller/sizes/SelectionSize.h"

#include "catalog/ApplicationDetectionRegistry.h"
#include "controller/HomePathExpander.h"
#include "deletion/ApplicationUninstallService.h"
#include "platform/ByteSum.h"

namespace zentrill {

SelectionSize selectionSize(const std::shared_ptr<const SafeDeletionEngine>& engine,
                            const std::vector<AppInfo>& tools, SafetyShield shield,
                            const std::function<bool()>& shouldStop,
                            std::optional<std::chrono::milliseconds> patience) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point end = patience ? Clock::now() + *patience : Clock::time_point::max();
    const ApplicationUninstallService service(engine);
    EarlierPlans earlier;
    PlanOptions options{.listedItems = 0};
    options.shouldStop = [&] { return shouldStop() || Clock::now() >= end; };
    options.earlier = &earlier;
    SelectionSize size;
    for (const AppInfo& tool : tools) {
        const ApplicationUninstallPlan plan =
            service.plan(ApplicationDetectionRegistry::rule(tool.name), shield, homePathExpander(), options);
        addBytes(size.goingBytes, plan.removedBytes());
        if (plan.stopped) {
            size.isWhole = false;
            break;
        }
    }
    return size;
}

} // namespace zentrill
