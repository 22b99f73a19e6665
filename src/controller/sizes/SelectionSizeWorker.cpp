#include "controller/sizes/SelectionSizeWorker.h"

#include "platform/HomeDirectory.h"
#include "platform/NetworkFileSystem.h"

#include <optional>
#include <utility>

namespace zentrill {

SelectionSizeWorker::SelectionSizeWorker(std::shared_ptr<MainQueue> link,
                                         std::shared_ptr<const SafeDeletionEngine> engine)
    : engine_(std::move(engine)), work_(std::move(link), "com.zentrill.sizes") {}

void SelectionSizeWorker::start(std::vector<AppInfo> tools, SafetyShield shield, Show show) {
    work_.start(
        [engine = engine_, tools = std::move(tools), shield](const auto& publish, const auto& shouldStop) {
            std::optional<std::chrono::milliseconds> patience;
            if (isOnNetwork(homeDirectory())) {
                patience = networkPatience;
            }
            const SelectionSize size = selectionSize(engine, tools, shield, shouldStop, patience);
            if (!shouldStop()) {
                publish(size);
            }
        },
        std::move(show));
}

} // namespace zentrill
