#include "models/ModelDeletionService.h"

#include "models/LocalModel.h"

#include <string_view>
#include <utility>
#include <vector>

namespace zentrill {

namespace {

/// A model holds no credentials, so there is nothing for the Safety Shield to keep.
DeletionOptions wholeItem() {
    DeletionOptions options;
    options.preserveCredentials = false;
    return options;
}

std::string joined(const std::vector<std::string>& failures) {
    std::string text;
    for (const std::string& failure : failures) {
        text.append(text.empty() ? "" : "; ").append(failure);
    }
    return text;
}

std::string sentence(std::string_view before, std::string_view name, std::string_view after) {
    return std::string(before).append(name).append(after);
}

} // namespace

ModelDeletionService::ModelDeletionService(std::shared_ptr<CommandExecuting> commands,
                                           SafeDeletionEngine deletion)
    : commands_(std::move(commands)), deletion_(std::move(deletion)) {}

ModelDeletionResult ModelDeletionService::deleteModel(const std::string& name, const std::string& source,
                                                      const std::string& path) const {
    return source == ollamaSource ? deleteOllamaModel(name, path) : deleteFiles(name, path);
}

ModelDeletionResult ModelDeletionService::deleteOllamaModel(const std::string& name,
                                                            const std::string& manifestPath) const {
    // Found through the runner's PATH: the tool has no one place.
    const CommandResult command = commands_->run("/usr/bin/env", {"ollama", "rm", name}, ollamaTimeout);
    if (!command.succeeded()) {
        return {.message = sentence("Ollama could not remove ", name, ": ").append(command.diagnostic())};
    }

    DeletionReport report = deletion_.deleteItem(manifestPath, wholeItem());
    if (!report.succeeded()) {
        return {.message = sentence("Ollama removed ", name, ", but manifest cleanup failed: ")
                               .append(joined(report.failures)),
                .deletionReport = std::move(report)};
    }
    return {.succeeded = true,
            .message = sentence("Removed ", name, " from Ollama."),
            .deletionReport = std::move(report)};
}

ModelDeletionResult ModelDeletionService::deleteFiles(const std::string& name,
                                                      const std::string& path) const {
    DeletionReport report = deletion_.deleteItem(path, wholeItem());
    if (!report.succeeded()) {
        return {.message = sentence("Could not remove ", name, ": ").append(joined(report.failures)),
                .deletionReport = std::move(report)};
    }
    return {.succeeded = true,
            .message = sentence("Removed model ", name, "."),
            .deletionReport = std::move(report)};
}

} // namespace zentrill
