#include "deletion/SafeDeletionEngine.h"

#include "deletion/CredentialShield.h"
#include "deletion/DeletionWalk.h"
#include "deletion/EarlierPlans.h"
#include "deletion/PathAliases.h"
#include "deletion/PlanWalk.h"
#include "deletion/UndeletableFolders.h"
#include "platform/Paths.h"
#include "platform/SystemError.h"
#include "platform/Text.h"

#include <string_view>
#include <utility>

namespace zentrill {

namespace {

std::string symlinkRefusal(const std::string& ancestor) {
    return "Refusing to traverse symlink ancestor: " + ancestor;
}

DeletionReport failureReport(std::string message) {
    DeletionReport report;
    report.failures.push_back(std::move(message));
    return report;
}

} // namespace

SafeDeletionEngine::SafeDeletionEngine(const FileSystem& fileManager, CredentialMatcher matcher,
                                       DeletionPredicate mayRemove, DeletionConcurrency concurrency,
                                       DeletionDomain domain)
    : fileManager_(&fileManager),
      matcher_(std::move(matcher)),
      mayRemove_(std::move(mayRemove)),
      concurrency_(concurrency),
      domain_(std::move(domain)) {}

SafeDeletionEngine SafeDeletionEngine::tellingTo(std::shared_ptr<DeletionProgress> progress) const {
    SafeDeletionEngine engine = *this;
    engine.progress_ = std::move(progress);
    return engine;
}

DeletionReport SafeDeletionEngine::deleteItem(const std::string& atPath,
                                              const DeletionOptions& options) const {
    ParentFolder parent;
    if (std::optional<DeletionReport> report = openParent(atPath, parent)) {
        return std::move(*report);
    }
    const std::string standardized = paths::standardized(atPath);
    DeletionReport report =
        options.preserveCredentials
            ? deletePreservingCredentials(atPath, standardized, std::move(parent.handle), options)
            : deleteWhole(atPath, standardized, std::move(parent.handle));
    if (progress_) {
        progress_->setPath({});
    }
    return report;
}

DeletionPlan SafeDeletionEngine::plan(const std::string& atPath, const DeletionOptions& options,
                                      const PlanOptions& planOptions) const {
    ParentFolder parent;
    if (std::optional<DeletionReport> report = openParent(atPath, parent)) {
        DeletionPlan plan;
        plan.failures = std::move(report->failures);
        plan.itemRefused = !plan.failures.empty();
        return plan;
    }
    const std::string standardized = paths::standardized(atPath);
    if (planOptions.earlier != nullptr && planOptions.earlier->covers(standardized)) {
        return {};
    }
    const CredentialShield shield(matcher_, options.explicitCredentialPaths);
    const DeletionRules rules{.shield = options.preserveCredentials ? &shield : nullptr,
                              .preserveUnrecognized =
                                  options.preserveCredentials && options.preserveUnrecognized,
                              .mayRemove = mayRemove_,
                              .concurrency = concurrency_};
    PlanWalk walk(rules, planOptions, atPath, standardized, std::move(parent.handle));
    DeletionPlan plan = walk.run().plan;
    if (planOptions.earlier != nullptr) {
        planOptions.earlier->add(standardized, plan.itemGoes);
    }
    return plan;
}

std::optional<DeletionReport> SafeDeletionEngine::openParent(const std::string& atPath,
                                                             ParentFolder& parent) const {
    if (std::optional<std::string> refusal = deletionRefusal(atPath)) {
        return failureReport(std::move(*refusal));
    }
    if (hasNul(atPath)) {
        return DeletionReport{}; // No file name contains a NUL, and the system would cut the path there.
    }
    const std::string standardized = paths::standardized(atPath);
    parent = ParentFolder::open(standardized);
    if (parent.unsafeAncestor) {
        return failureReport(symlinkRefusal(*parent.unsafeAncestor));
    }
    EntryStatus status;
    const int error = parent.error != 0 ? parent.error : parent.handle.lookUp(parent.name.c_str(), status);
    if (error != 0) {
        // A path that cannot be looked up counts as missing; one that just cannot be opened does not.
        if (!fileManager_->itemExistsWithoutFollowingSymlink(standardized)) {
            return DeletionReport{};
        }
        return failureReport(atPath + ": " + systemDescription(error));
    }
    if (UndeletableFolders().contains(status.identity)) {
        return failureReport("Refusing to delete a folder that is or holds the home folder: " + atPath);
    }
    return std::nullopt;
}

std::optional<std::string> SafeDeletionEngine::deletionRefusal(const std::string& path) const {
    if (!path.starts_with('/')) {
        return "Refusing to delete a path that is not absolute: " + path;
    }
    const std::string standardized = paths::standardized(path);
    if (std::optional<std::string> refusal = UndeletableFolders().refusal(standardized)) {
        return refusal;
    }
    if (const std::optional<std::string> ancestor = unsafeSymlinkAncestor(standardized)) {
        return symlinkRefusal(*ancestor);
    }
    return std::nullopt;
}

/// The first link on the way to the standardized `path` that is not a system alias.
std::optional<std::string> SafeDeletionEngine::unsafeSymlinkAncestor(const std::string& path) const {
    for (std::size_t end = path.find('/', 1); end != std::string::npos; end = path.find('/', end + 1)) {
        std::string ancestor = path.substr(0, end);
        const std::optional<std::string> destination = fileManager_->symbolicLinkDestination(ancestor);
        if (destination && !isSystemAlias(ancestor, *destination)) {
            return ancestor;
        }
    }
    return std::nullopt;
}

DeletionReport SafeDeletionEngine::deleteWhole(const std::string& atPath, const std::string& standardized,
                                               DirectoryHandle parent) const {
    const DeletionRules rules{
        .mayRemove = mayRemove_, .concurrency = concurrency_, .domain = domain_, .progress = progress_.get()};
    DeletionWalk walk(rules, atPath, standardized, std::move(parent));
    const DeletionOutcome outcome = walk.run();
    if (const auto& failure = outcome.record.firstFailure) {
        std::string line = atPath + ": " + failure->description;
        if (failure->path != atPath) {
            line += " (at " + failure->path + ")";
        }
        return failureReport(std::move(line));
    }
    DeletionReport report;
    if (!outcome.left && outcome.record.removedCount > 0) {
        report.removed.push_back(atPath);
    }
    return report;
}

DeletionReport SafeDeletionEngine::deletePreservingCredentials(const std::string& atPath,
                                                               const std::string& standardized,
                                                               DirectoryHandle parent,
                                                               const DeletionOptions& options) const {
    const CredentialShield shield(matcher_, options.explicitCredentialPaths);
    const DeletionRules rules{.shield = &shield,
                              .preserveUnrecognized = options.preserveUnrecognized,
                              .mayRemove = mayRemove_,
                              .concurrency = concurrency_,
                              .domain = domain_,
                              .progress = progress_.get()};
    DeletionWalk walk(rules, atPath, standardized, std::move(parent));
    return walk.run().record.report;
}

} // namespace zentrill
