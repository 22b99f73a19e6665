#include "controller/review/ReviewRows.h"

#include "controller/DisplayText.h"
#include "platform/ByteCountFormatter.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace zentrill::review_rows {

namespace {

using Fate = ReviewRow::Fate;
using Kind = ReviewRow::Kind;

/// The fates of items, in the order in which they are shown.
struct End {
    DeletionPlan::Items DeletionPlan::* items;
    Fate fate;
    const char* reason;
};

constexpr std::array ends{
    End{&DeletionPlan::recognizedCredentials, Fate::stays, "Kept: recognized credential"},
    End{&DeletionPlan::listedCredentials, Fate::stays, "Kept: listed credential"},
    End{&DeletionPlan::uncertainData, Fate::stays, "Kept: uncertain data"},
    End{&DeletionPlan::refused, Fate::stays, "Refused"},
    End{&DeletionPlan::failing, Fate::fails, "Would fail"},
    End{&DeletionPlan::removed, Fate::goes, "Goes"},
};

std::string keyOf(const std::string& tool, const std::string& path) {
    return std::string(tool).append(1, '\0').append(path);
}

QString joined(const std::vector<std::string>& names) {
    QString text;
    for (const std::string& name : names) {
        text += (text.isEmpty() ? QString() : QStringLiteral(", ")) + displayName(name);
    }
    return text;
}

/// The system's description of what would fail at `path`, taken from the failure that names it.
QString failureReason(const DeletionPlan& plan, const std::string& path) {
    const std::string beginning = path + ": ";
    for (const std::string& line : plan.failures) {
        if (line.starts_with(beginning)) {
            return QStringLiteral("Would fail: ") +
                   displayName(std::string_view(line).substr(beginning.size()));
        }
    }
    return QStringLiteral("Would fail");
}

/// Describes an item of which nothing goes: the only reason, or that there are several.
void describeKept(ReviewRow& row, const DeletionPlan& plan, const std::string& path) {
    const auto isMet = [&plan](const End& end) { return (plan.*end.items).count > 0; };
    const auto* const first = std::ranges::find_if(ends, isMet);
    if (first == ends.end()) {
        return;
    }
    row.fate = plan.failing.count > 0 ? Fate::fails : Fate::stays;
    if (std::ranges::count_if(ends, isMet) > 1) {
        row.reason = plan.failing.count > 0 ? QStringLiteral("Stays") : QStringLiteral("Kept");
    } else {
        row.reason =
            first->fate == Fate::fails ? failureReason(plan, path) : QString::fromLatin1(first->reason);
    }
}

/// What becomes of the item as a whole.
void describe(ReviewRow& row, const ApplicationUninstallPlan::Item& item, ReviewStage stage) {
    const DeletionPlan& plan = item.plan;
    const bool isComplete = stage == ReviewStage::complete;
    if (item.part == ApplicationUninstallPlan::Part::remainingData) {
        row.fate = Fate::stays;
        row.reason = QStringLiteral("Stays: not part of the removal");
    } else if (plan.itemRefused) {
        row.fate = Fate::fails;
        row.reason = QStringLiteral("Refused: ") +
                     (plan.failures.empty() ? QString() : displayName(plan.failures.front()));
    } else if (isComplete && plan.itemGoes) {
        row.fate = Fate::goes;
        row.reason = QStringLiteral("Goes");
    } else if (plan.removed.count > 0) {
        row.fate = isComplete ? Fate::partly : Fate::none;
        row.reason = isComplete ? QStringLiteral("Goes in part") : QString();
    } else if (isComplete) {
        describeKept(row, plan, item.path);
    }
    if (!item.sharedWith.empty()) {
        row.reason += (row.reason.isEmpty() ? QString() : QStringLiteral(" · ")) +
                      QStringLiteral("shared with ") + joined(item.sharedWith);
    }
}

/// The path of an entry relative to its item.
QString nameIn(const std::string& item, const std::string& path) {
    const bool isInside = path.starts_with(item + "/");
    return displayName(isInside ? std::string_view(path).substr(item.size() + 1) : std::string_view(path));
}

void appendEntries(std::vector<ReviewRow>& rows, const std::string& tool, const std::string& item,
                   const DeletionPlan& plan) {
    for (const End& end : ends) {
        const DeletionPlan::Items& items = plan.*end.items;
        std::uint64_t shown = 0;
        for (const DeletionPlan::Item& each : items.listed) {
            ++shown;
            if (each.path != item) {
                rows.push_back({.key = keyOf(tool, each.path),
                                .kind = Kind::entry,
                                .fate = end.fate,
                                .text = nameIn(item, each.path),
                                .size = sizeText(each.logicalBytes),
                                .reason = end.fate == Fate::fails ? failureReason(plan, each.path)
                                                                  : QString::fromLatin1(end.reason)});
            }
        }
        // The item itself, the last of what goes, has its own line.
        const bool countsItem = end.fate == Fate::goes && plan.itemGoes && items.count > shown;
        const std::uint64_t others = items.count - std::min(items.count, shown + (countsItem ? 1 : 0));
        if (others > 0) {
            rows.push_back({.key = keyOf(tool, item).append(1, '\0').append(end.reason),
                            .kind = Kind::more,
                            .fate = end.fate,
                            .text = QStringLiteral("and %L1 more").arg(others),
                            .size = {},
                            .reason = QString::fromLatin1(end.reason)});
        }
    }
}

} // namespace

QString sizeText(std::int64_t bytes) {
    if (bytes == 1) {
        return QStringLiteral("1 byte");
    }
    if (bytes < 1000) {
        return QStringLiteral("%1 bytes").arg(bytes);
    }
    if (bytes < 999'950) {
        const std::int64_t tenths = (bytes + 50) / 100;
        return tenths % 10 == 0 ? QStringLiteral("%1 KB").arg(tenths / 10)
                                : QStringLiteral("%1.%2 KB").arg(tenths / 10).arg(tenths % 10);
    }
    return displayName(formattedByteCount(bytes));
}

ReviewRow remark(const std::string& key, const QString& text) {
    return {.key = key, .kind = Kind::remark, .fate = Fate::none, .text = text, .size = {}, .reason = {}};
}

void append(std::vector<ReviewRow>& rows, const std::string& tool, const ApplicationUninstallPlan::Item& item,
            ReviewStage stage) {
    ReviewRow row{.key = keyOf(tool, item.path),
                  .kind = Kind::item,
                  .fate = Fate::none,
                  .text = displayName(item.path),
                  .size = stage == ReviewStage::complete ? sizeText(item.logicalBytes) : QString(),
                  .reason = {}};
    describe(row, item, stage);
    rows.push_back(std::move(row));
    appendEntries(rows, tool, item.path, item.plan);
}

std::vector<ReviewRow> ofModel(const std::string& path, const ModelDeletionPlan& plan, ReviewStage stage) {
    std::vector<ReviewRow> rows;
    append(rows, {},
           {.path = path,
            .part = ApplicationUninstallPlan::Part::data,
            .logicalBytes = plan.files.logicalBytes(),
            .plan = plan.files},
           stage);
    for (const ModelDeletionPlan::SharedBlob& blob : plan.sharedBlobs) {
        rows.push_back({.key = '\0' + blob.path,
                        .kind = Kind::entry,
                        .fate = Fate::stays,
                        .text = displayName(blob.path),
                        .size = sizeText(blob.logicalBytes),
                        .reason = QStringLiteral("Kept: shared with ") + joined(blob.models)});
    }
    if (plan.bytesElsewhere > 0) {
        rows.push_back(
            remark("elsewhere", QStringLiteral("%1 lie elsewhere, behind links in this folder. They "
                                               "stay, and nothing of them comes free.")
                                    .arg(sizeText(plan.bytesElsewhere))));
    }
    return rows;
}

std::vector<ReviewRow> ofContainer(const DockerContainer& container) {
    return {{.key = container.id,
             .kind = Kind::item,
             .fate = Fate::goes,
             .text = displayName(container.name),
             .size = {},
             .reason =
                 container.isRunning() ? QStringLiteral("Goes, once it is stopped") : QStringLiteral("Goes")},
            remark("written", QStringLiteral("The container goes with all that was written in it. How much "
                                             "that is is not known.")),
            remark("stays",
                   QStringLiteral("Its image %1 and its volumes stay.").arg(displayName(container.image)))};
}

std::vector<ReviewRow> ofImage(const DockerImage& image) {
    const bool isUnused = image.usage == DockerImageUsage::unused;
    ReviewRow row{.key = image.imageID,
                  .kind = Kind::item,
                  .fate = isUnused ? Fate::goes : Fate::stays,
                  .text = displayName(image.displayName() + " (" + image.shortID() + ")"),
                  .size = displayName(image.size),
                  .reason = QStringLiteral("Goes")};
    if (image.usage == DockerImageUsage::inUse) {
        row.reason = QStringLiteral("Refused: a container uses it");
    } else if (!isUnused) {
        row.reason = QStringLiteral("Refused: whether a container uses it is not known");
    }
    return {row, remark("layers", QStringLiteral("Layers that other images share stay, so that less than its "
                                                 "size may come free."))};
}

} // namespace zentrill::review_rows
