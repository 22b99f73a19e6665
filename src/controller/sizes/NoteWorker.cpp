#include "controller/sizes/NoteWorker.h"

#include "controller/sizes/SizeTexts.h"
#include "models/ModelDeletionService.h"

#include <cstdint>
#include <utility>

namespace zentrill {

NoteWorker::NoteWorker(std::shared_ptr<MainQueue> link, std::shared_ptr<const SafeDeletionEngine> engine)
    : engine_(std::move(engine)), work_(std::move(link), "com.zentrill.notes") {}

void NoteWorker::explainModel(LocalModel model, Show show) {
    work_.start(
        [engine = engine_, model = std::move(model)](const auto& publish, const auto& shouldStop) {
            const PlanOptions options{.listedItems = 0, .shouldStop = shouldStop};
            const ModelDeletionPlan plan =
                ModelDeletionService(std::make_shared<ShellCommandRunner>(), engine)
                    .plan(model.source, model.path, options);
            if (!shouldStop()) {
                publish(modelNote(plan));
            }
        },
        std::move(show));
}

void NoteWorker::explainRemainingData(std::vector<std::string> paths, Show show) {
    work_.start(
        [engine = engine_, paths = std::move(paths)](const auto& publish, const auto& shouldStop) {
            DeletionOptions everything;
            everything.preserveCredentials = false;
            const PlanOptions options{.listedItems = 0, .shouldStop = shouldStop};
            std::vector<std::int64_t> sizes;
            for (const std::string& path : paths) {
                sizes.push_back(engine->plan(path, everything, options).logicalBytes());
            }
            if (!shouldStop()) {
                publish(remainingDataNote(paths, sizes));
            }
        },
        std::move(show));
}

} // namespace zentrill
