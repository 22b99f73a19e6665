#include "models/ModelDeletionService.h"

#include "deletion/LinkedFiles.h"
#include "models/LinkedElsewhere.h"
#include "models/LocalModel.h"
#include "models/OllamaStore.h"
#include "platform/ByteSum.h"
#include "platform/DirectoryHandle.h"
#include "platform/Paths.h"
#include "platform/Text.h"

#include <map>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace zentrill {

namespace {

/// A model has no credentials for the Safety Shield to keep.
DeletionOptions wholeItem() {
    DeletionOptions options;
    options.preserveCredentials = false;
    return options;
}

/// Adds a file to those that go.
void addFile(const std::string& path, const EntryStatus& status, LinkedFiles& linkedFiles,
             const PlanOptions& options, DeletionPlan& plan) {
    constexpr unsigned onlyEnd = 0;
    constexpr bool goes = true;
    ++plan.removed.count;
    const LinkedFiles::Count link = linkedFiles.add(status, onlyEnd, goes);
    if (link.firstOfItsEnd) {
        addBytes(plan.removed.logicalBytes, status.size);
    }
    if (link.lastLinkGoes) {
        addBytes(plan.freedBytes, status.allocatedSize);
    }
    if (plan.removed.listed.size() < options.listedItems) {
        plan.removed.listed.push_back({.path = path, .logicalBytes = status.size});
    }
}

/// The file at `path` itself; nothing if none can be seen there.
std::optional<EntryStatus> statusOf(const std::string& path) {
    DirectoryHandle folder;
    EntryStatus status;
    if (DirectoryHandle::open(std::string(paths::parent(path)), FinalLink::follow, folder) != 0 ||
        folder.lookUp(std::string(paths::lastComponent(path)).c_str(), status) != 0) {
        return std::nullopt;
    }
    return status;
}

std::string sentence(std::string_view before, std::string_view name, std::string_view after) {
    return std::string(before).append(name).append(after);
}

} // namespace

ModelDeletionService::ModelDeletionService(std::shared_ptr<CommandExecuting> commands,
                                           std::shared_ptr<const SafeDeletionEngine> deletion)
    : commands_(std::move(commands)), deletion_(std::move(deletion)) {}

ModelDeletionResult ModelDeletionService::deleteModel(const std::string& name, const std::string& source,
                                                      const std::string& path) const {
    return source == ollamaSource ? deleteOllamaModel(name, path) : deleteFiles(name, path);
}

ModelDeletionResult ModelDeletionService::deleteOllamaModel(const std::string& name,
                                                            const std::string& manifestPath) const {
    // Found through the runner's PATH, because the tool has no fixed place.
    const CommandResult command = commands_->run("/usr/bin/env", {"ollama", "rm", name}, ollamaTimeout);
    if (!command.succeeded()) {
        return {.message = sentence("Ollama could not remove ", name, ": ").append(command.diagnostic())};
    }

    DeletionReport report = deletion_->deleteItem(manifestPath, wholeItem());
    if (!report.succeeded()) {
        return {.message = sentence("Ollama removed ", name, ", but manifest cleanup failed: ")
                               .append(joined(report.failures, "; ")),
                .deletionReport = std::move(report)};
    }
    return {.succeeded = true,
            .message = sentence("Removed ", name, " from Ollama."),
            .deletionReport = std::move(report)};
}

ModelDeletionResult ModelDeletionService::deleteFiles(const std::string& name,
                                                      const std::string& path) const {
    DeletionReport report = deletion_->deleteItem(path, wholeItem());
    if (!report.succeeded()) {
        return {.message = sentence("Could not remove ", name, ": ").append(joined(report.failures, "; ")),
                .deletionReport = std::move(report)};
    }
    return {.succeeded = true,
            .message = sentence("Removed model ", name, "."),
            .deletionReport = std::move(report)};
}

ModelDeletionPlan ModelDeletionService::plan(const std::string& source, const std::string& path,
                                             const PlanOptions& options) const {
    if (source == ollamaSource) {
        return planOllamaModel(path, options);
    }
    ModelDeletionPlan plan{.files = deletion_->plan(path, wholeItem(), options)};
    if (!plan.files.stopped) {
        plan.bytesElsewhere = bytesLinkedElsewhere(path, options.shouldStop);
    }
    return plan;
}

/// Ollama's tool removes the files itself, so it does not matter what the deletion engine would refuse.
ModelDeletionPlan ModelDeletionService::planOllamaModel(const std::string& manifestPath,
                                                        const PlanOptions& options) const {
    ModelDeletionPlan plan;
    const auto stopRequested = [&] {
        plan.files.stopped = plan.files.stopped || (options.shouldStop && options.shouldStop());
        return plan.files.stopped;
    };
    const OllamaStore store(manifestPath);
    std::vector<std::string> parts = store.blobs();
    std::map<std::string, std::vector<std::string>> sharing = store.otherModelsWith(parts, stopRequested);
    parts.insert(parts.begin(), manifestPath);
    LinkedFiles linkedFiles;
    for (const std::string& path : parts) {
        if (stopRequested()) {
            break;
        }
        const std::optional<EntryStatus> status = statusOf(path);
        if (!status) {
            continue;
        }
        if (const auto shared = sharing.find(path); shared != sharing.end()) {
            plan.sharedBlobs.push_back(
                {.path = path, .logicalBytes = status->size, .models = std::move(shared->second)});
        } else {
            addFile(path, *status, linkedFiles, options, plan.files);
        }
    }
    plan.files.itemGoes = !plan.files.stopped && statusOf(manifestPath).has_value();
    if (std::optional<std::string> refusal = deletion_->deletionRefusal(manifestPath)) {
        plan.files.failures.push_back(std::move(*refusal));
    }
    return plan;
}

} // namespace zentrill
