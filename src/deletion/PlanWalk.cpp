#include "deletion/PlanWalk.h"

#include "platform/ByteSum.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace zentrill {

PlanWalk::PlanWalk(const DeletionRules& rules, const PlanOptions& options, std::string path,
                   std::string standardizedPath, DirectoryHandle parent)
    : rules_(rules),
      options_(options),
      own_(std::make_unique<Shared>(path, options)),
      shared_(*own_),
      paths_(std::move(path), std::move(standardizedPath)),
      itemName_(paths_.name()),
      stack_(std::move(parent)),
      record_(emptyRecord()),
      news_(emptyRecord()),
      handedOver_(lend(), rules.mayRemove ? DeletionConcurrency{} : rules.concurrency) {
    folders_.push_back({.forecast = RemovalForecast(stack_.directory())});
}

PlanWalk::PlanWalk(const PlanWalk& around, SubtreeTask task, DeletionCrew& crew, bool mayHelp)
    : rules_(around.rules_),
      options_(around.options_),
      shared_(around.shared_),
      paths_(std::move(task.paths)),
      itemName_(paths_.name()),
      stack_(std::move(task.parent)),
      record_(emptyRecord()),
      news_(emptyRecord()),
      handedOver_(lend(), crew, mayHelp) {
    folders_.push_back({.forecast = RemovalForecast(stack_.directory())});
}

PlanRecord PlanWalk::emptyRecord() const {
    // Without the shield a report has a single failure, which names the first item that could not go.
    return {.plan = {},
            .listedItems = options_.listedItems,
            .listedFailures = rules_.shield != nullptr ? options_.listedItems : 1};
}

HandedOverFolders<PlanOutcome>::Walk PlanWalk::lend() {
    return {.stack = stack_,
            .record = record_,
            .subtree =
                [this](SubtreeTask task, DeletionCrew& crew, bool mayHelp) {
                    PlanWalk walk(*this, std::move(task), crew, mayHelp);
                    walk.plan(walk.itemName_.c_str(), EntryKind::directory);
                    return walk.goThrough();
                },
            .finished =
                [this](const PlanOutcome& outcome) {
                    folder().left = folder().left || outcome.left;
                    addBytes(folder().logicalBytes, outcome.logicalBytes);
                }};
}

PlanRecord PlanWalk::run() {
    CredentialReason reason = CredentialReason::none;
    if (rules_.shield != nullptr) {
        reason = rules_.shield->reason(paths_.standardized(""));
    }
    if (reason == CredentialReason::none) {
        plan(itemName_.c_str(), EntryKind::unknown);
    } else {
        keep(itemName_.c_str(), reason);
    }
    PlanOutcome outcome = goThrough();
    if (shared_.teller.isWanted()) {
        shared_.teller.tellAll();
    }
    DeletionPlan& plan = outcome.record.plan;
    plan.stopped = shared_.stopped;
    plan.itemGoes = !plan.stopped && !outcome.left && plan.removed.count > 0;
    return std::move(outcome.record);
}

/// Plans the contents of the item, if it was entered.
PlanOutcome PlanWalk::goThrough() {
    while (stack_.depth() > 1) {
        if (stopRequested()) {
            handedOver_.drop();
            folders_.pop_back();
            (void)stack_.leave();
        } else if (const auto entry = stack_.nextEntry()) {
            handle(entry->name, entry->kind);
        } else if (const int error = stack_.takeListingError(); error != 0) {
            if (error != ENOENT) {
                failHere(error);
            }
        } else if (const std::optional<std::string> name = handedOver_.takeBack()) {
            plan(name->c_str(), EntryKind::directory);
        } else if (!shared_.stopped) { // Another thread may have noticed meanwhile that the plan is to end.
            leave();
        }
    }
    tellNews();
    return {.record = record_.take(), .left = folder().left, .logicalBytes = folder().logicalBytes};
}

bool PlanWalk::stopRequested() {
    if (++entriesSinceTold_ >= PlanTeller::entriesBetween) {
        tellNews();
    }
    if (!shared_.stopped && options_.shouldStop && options_.shouldStop()) {
        shared_.stopped = true;
    }
    return shared_.stopped;
}

void PlanWalk::tellNews() {
    entriesSinceTold_ = 0;
    if (shared_.teller.isWanted()) {
        shared_.teller.gather(std::exchange(news_, emptyRecord()));
    }
}

void PlanWalk::handle(const char* name, EntryKind kind) {
    ++handledEntries_;
    const auto earlier = std::ranges::find(folder().earlierItems, name, &EarlierPlans::Item::name);
    if (earlier != folder().earlierItems.end()) {
        folder().left = folder().left || !earlier->goes;
        return;
    }
    if (rules_.shield != nullptr) {
        const CredentialReason reason = rules_.shield->reasonForName(name, folder().explicitNames);
        if (reason != CredentialReason::none) {
            keep(name, reason);
            return;
        }
    }
    if (kind != EntryKind::directory || !handOver(name)) {
        plan(name, kind);
    }
}

/// Leaves the folder `name` of the top directory to another thread that has nothing to do, if there is one.
bool PlanWalk::handOver(const char* name) {
    return handedOver_.areWanted(handledEntries_) &&
           handedOver_.handOver(
               name, ItemPaths(pathOf(name), paths_.standardized(below()).append("/").append(name)), {});
}

/// Prepares for the entries of the directory just entered.
void PlanWalk::begin() {
    Folder entered{.forecast = RemovalForecast(stack_.directory())};
    if (options_.earlier != nullptr) {
        entered.earlierItems = options_.earlier->itemsIn(paths_.standardized(below()));
    }
    if (rules_.shield != nullptr && rules_.shield->hasExplicitCredentials()) {
        entered.explicitNames = rules_.shield->explicitNames(paths_.standardized(below()));
    }
    if (rules_.preserveUnrecognized) {
        EntryStatus ignored;
        entered.lookUpError = stack_.directory().lookUp(".", ignored);
    }
    folders_.push_back(std::move(entered));
}

void PlanWalk::leave() {
    const std::string name = stack_.nameOfTop();
    const Folder left = std::move(folder());
    folders_.pop_back();
    if (!stack_.leave()) {
        // Somebody moved it. The folder around it is out of reach, and with it all that it still holds.
        failHere(ESTALE);
    } else if (left.left) {
        folder().left = true;
    } else if (const int error = folder().forecast.removalError(left.forecast); error != 0) {
        fail(name.c_str(), error, {.kind = EntryKind::directory});
    } else {
        count(name.c_str(), End::removed,
              {.kind = EntryKind::directory, .identity = {}, .size = left.logicalBytes});
        addBytes(folder().logicalBytes, left.logicalBytes);
    }
}

std::string_view PlanWalk::below() const {
    return stack_.relativePath().substr(itemName_.size());
}

std::string PlanWalk::pathOf(const char* name) const {
    return stack_.depth() == 1 ? paths_.reported("") : paths_.reported(below(), name);
}

} // namespace zentrill
