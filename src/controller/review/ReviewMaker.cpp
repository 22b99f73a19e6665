#include "controller/review/ReviewMaker.h"

#include "catalog/ApplicationDetectionRegistry.h"
#include "controller/DisplayText.h"
#include "controller/HomePathExpander.h"
#include "controller/review/ReviewRows.h"
#include "deletion/ApplicationUninstallService.h"
#include "models/ModelDeletionService.h"
#include "platform/ByteSum.h"

#include <string_view>
#include <utility>
#include <variant>

namespace zentrill {

namespace {

/// The only tool whose package manager has to remove it before its files go.
constexpr std::string_view npmInstalledName = "Claude Code";

/// An item of a tool while its plan is made.
struct GrowingItem {
    std::string path;
    PlanRecord found;
};

} // namespace

ReviewMaker::ReviewMaker(std::shared_ptr<const SafeDeletionEngine> engine, SafetyShield shield,
                         std::size_t listedEntries, Show show, std::function<bool()> shouldStop)
    : engine_(std::move(engine)),
      shield_(shield),
      listedEntries_(listedEntries),
      show_(std::move(show)),
      shouldStop_(std::move(shouldStop)) {}

void ReviewMaker::make(const ReviewSubject& subject) {
    if (const auto* tools = std::get_if<std::vector<AppInfo>>(&subject)) {
        reviewTools(*tools);
    } else if (const auto* model = std::get_if<LocalModel>(&subject)) {
        reviewModel(*model);
    } else if (const auto* container = std::get_if<DockerContainer>(&subject)) {
        showKnown(review_rows::ofContainer(*container), QStringLiteral("Not known"));
    } else if (const auto* image = std::get_if<DockerImage>(&subject)) {
        showKnown(review_rows::ofImage(*image), image->usage != DockerImageUsage::unused
                                                    ? QStringLiteral("Nothing")
                                                    : displayName(image->size));
    }
}

void ReviewMaker::reviewTools(const std::vector<AppInfo>& tools) {
    EarlierPlans earlier;
    for (const AppInfo& tool : tools) {
        if (shouldStop_()) {
            return;
        }
        reviewTool(tool, tools.size() > 1, earlier);
    }
    if (!shouldStop_()) {
        show({}, 0, 0, ReviewStage::complete);
    }
}

void ReviewMaker::reviewTool(const AppInfo& tool, bool isOneOfSeveral, EarlierPlans& earlier) {
    if (isOneOfSeveral) {
        rows_.push_back({.key = tool.name,
                         .kind = ReviewRow::Kind::heading,
                         .fate = ReviewRow::Fate::none,
                         .text = displayName(tool.displayName),
                         .size = {},
                         .reason = {}});
    }
    if (tool.name == npmInstalledName) {
        rows_.push_back(review_rows::remark(
            tool.name + " npm",
            QStringLiteral("npm removes its package first, if it was installed that way.")));
    }
    std::vector<GrowingItem> growing;
    PlanOptions options{.listedItems = listedEntries_, .shouldStop = shouldStop_, .earlier = &earlier};
    options.progress = [&](const std::string& path, const DeletionPlan& news) {
        if (growing.empty() || growing.back().path != path) {
            growing.push_back({.path = path, .found = emptyRecord()});
        }
        growing.back().found.append({.plan = news});
        std::vector<ReviewRow> rows;
        std::int64_t going = 0;
        std::int64_t freed = 0;
        for (const GrowingItem& item : growing) {
            addBytes(going, item.found.plan.removed.logicalBytes);
            addBytes(freed, item.found.plan.freedBytes);
            review_rows::append(rows, tool.name, {.path = item.path, .plan = item.found.plan},
                                ReviewStage::underWay);
        }
        show(std::move(rows), going, freed, ReviewStage::underWay);
    };
    const ApplicationUninstallPlan plan = ApplicationUninstallService(engine_).plan(
        ApplicationDetectionRegistry::rule(tool.name), shield_, homePathExpander(), options);
    for (const ApplicationUninstallPlan::Item& item : plan.items) {
        review_rows::append(rows_, tool.name, item, ReviewStage::complete);
    }
    if (plan.staysInstalled) {
        rows_.push_back(review_rows::remark(
            tool.name + " stays", QStringLiteral("An executable or a bundle of it would still be there.")));
    }
    addBytes(goingBytes_, plan.removedBytes());
    addBytes(freedBytes_, plan.freedBytes());
}

void ReviewMaker::reviewModel(const LocalModel& model) {
    ModelDeletionPlan found;
    PlanRecord files = emptyRecord();
    PlanOptions options{.listedItems = listedEntries_, .shouldStop = shouldStop_};
    options.progress = [&](const std::string& /*path*/, const DeletionPlan& news) {
        files.append({.plan = news});
        found.files = files.plan;
        show(review_rows::ofModel(model.path, found, ReviewStage::underWay), found.files.removed.logicalBytes,
             found.files.freedBytes, ReviewStage::underWay);
    };
    const ModelDeletionPlan plan = ModelDeletionService(std::make_shared<ShellCommandRunner>(), engine_)
                                       .plan(model.source, model.path, options);
    if (!shouldStop_()) {
        show(review_rows::ofModel(model.path, plan, ReviewStage::complete), plan.files.removed.logicalBytes,
             plan.files.freedBytes, ReviewStage::complete);
    }
}

PlanRecord ReviewMaker::emptyRecord() const {
    return {.plan = {}, .listedItems = listedEntries_, .listedFailures = listedEntries_};
}

void ReviewMaker::showKnown(std::vector<ReviewRow> rows, const QString& size) {
    show_({.rows = std::move(rows),
           .going = size,
           .comingFree = QStringLiteral("Not known"),
           .complete = true});
}

void ReviewMaker::show(std::vector<ReviewRow> more, std::int64_t goingBytes, std::int64_t freedBytes,
                       ReviewStage stage) {
    addBytes(goingBytes, goingBytes_);
    addBytes(freedBytes, freedBytes_);
    ReviewContent content{.rows = rows_,
                          .going = review_rows::sizeText(goingBytes),
                          .comingFree = review_rows::sizeText(freedBytes),
                          .complete = stage == ReviewStage::complete};
    content.rows.insert(content.rows.end(), std::make_move_iterator(more.begin()),
                        std::make_move_iterator(more.end()));
    show_(std::move(content));
}

} // namespace zentrill
