#pragma once

#include "catalog/AppInfo.h"
#include "controller/BackgroundWork.h"
#include "controller/sizes/SelectionSize.h"
#include "deletion/SafeDeletionEngine.h"
#include "deletion/SafetyShield.h"

#include <chrono>
#include <memory>
#include <vector>

namespace zentrill {

/// Computes the size of a selection in the background. Because nobody has asked for it, a home folder on a
/// network is looked at for only a few seconds.
///
/// Belongs to the main thread.
class SelectionSizeWorker {
public:
    /// Called on the main thread.
    using Show = BackgroundWork<SelectionSize>::Show;

    static constexpr std::chrono::seconds networkPatience{5};

    SelectionSizeWorker(std::shared_ptr<MainQueue> link, std::shared_ptr<const SafeDeletionEngine> engine);

    /// Ends the previous computation, of which nothing more is shown.
    void start(std::vector<AppInfo> tools, SafetyShield shield, Show show);

    /// Returns at once; the thread ends its work at the next entry.
    void cancel() { work_.cancel(); }

    /// To be called last: gives the thread `patience` to end, and returns whether it did.
    bool stop(std::chrono::milliseconds patience) { return work_.stop(patience); }

private:
    std::shared_ptr<const SafeDeletionEngine> engine_;
    BackgroundWork<SelectionSize> work_;
};

} // namespace zentrill
