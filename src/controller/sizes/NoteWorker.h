#pragma once

#include "controller/BackgroundWork.h"
#include "deletion/SafeDeletionEngine.h"
#include "models/LocalModel.h"

#include <QString>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace zentrill {

/// Finds out in the background what a row's tooltip adds to the row, one at a time.
///
/// Belongs to the main thread.
class NoteWorker {
public:
    /// Called once, on the main thread; with an empty text if there is nothing to add.
    using Show = BackgroundWork<QString>::Show;

    NoteWorker(std::shared_ptr<MainQueue> link, std::shared_ptr<const SafeDeletionEngine> engine);

    /// What the deletion of the model frees, if that differs from its size.
    void explainModel(LocalModel model, Show show);

    /// How large the data at these paths are.
    void explainRemainingData(std::vector<std::string> paths, Show show);

    /// Returns at once; the thread ends its work at the next entry.
    void cancel() { work_.cancel(); }

    /// To be called last: gives the thread `patience` to end, and returns whether it did.
    bool stop(std::chrono::milliseconds patience) { return work_.stop(patience); }

private:
    std::shared_ptr<const SafeDeletionEngine> engine_;
    BackgroundWork<QString> work_;
};

} // namespace zentrill
