#pragma once

#include "deletion/SafeDeletionEngine.h"
#include "models/ModelDeletionPlan.h"
#include "models/ModelDeletionResult.h"
#include "process/CommandExecuting.h"
#include "process/ShellCommandRunner.h"

#include <memory>
#include <string>

namespace zentrill {

/// Deletes one local model that a scan has listed. Ollama's models go through Ollama's own tool, which knows
/// the blobs that they share; all other models are one file or one folder.
///
///     const ModelDeletionResult result =
///         ModelDeletionService().deleteModel(model.name, model.source, model.path);
class ModelDeletionService final {
public:
    /// How long `ollama rm` may take.
    static constexpr CommandExecuting::Timeout ollamaTimeout{30.0};

    explicit ModelDeletionService(
        std::shared_ptr<CommandExecuting> commands = std::make_shared<ShellCommandRunner>(),
        std::shared_ptr<const SafeDeletionEngine> deletion = std::make_shared<const SafeDeletionEngine>());

    /// Blocks until the model is gone or its deletion failed. `source` as the scan labelled it: only exactly
    /// "Ollama" means Ollama's tool. When that tool fails, nothing else is deleted.
    [[nodiscard]] ModelDeletionResult deleteModel(const std::string& name, const std::string& source,
                                                  const std::string& path) const;

    /// What `deleteModel` would do, found out without changing anything and without starting a tool.
    /// `options.earlier` and `options.progress` apply only to files and folders.
    [[nodiscard]] ModelDeletionPlan plan(const std::string& source, const std::string& path,
                                         const PlanOptions& options = {}) const;

private:
    [[nodiscard]] ModelDeletionResult deleteOllamaModel(const std::string& name,
                                                        const std::string& manifestPath) const;
    [[nodiscard]] ModelDeletionResult deleteFiles(const std::string& name, const std::string& path) const;

    [[nodiscard]] ModelDeletionPlan planOllamaModel(const std::string& manifestPath,
                                                    const PlanOptions& options) const;

    std::shared_ptr<CommandExecuting> commands_;
    std::shared_ptr<const SafeDeletionEngine> deletion_;
};

} // namespace zentrill
