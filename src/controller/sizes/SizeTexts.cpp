#include "controller/sizes/SizeTexts.h"

#include "controller/DisplayText.h"
#include "controller/review/ReviewRows.h"
#include "platform/ByteSum.h"

#include <QStringList>

#include <algorithm>
#include <cstddef>
#include <set>

namespace zentrill {

using review_rows::sizeText;

namespace {

/// A tooltip has room for the first names and the number of the others.
constexpr std::size_t mostNames = 6;

QString listed(const std::set<std::string>& names) {
    QStringList texts;
    for (const std::string& name : names) {
        if (texts.size() == static_cast<qsizetype>(mostNames)) {
            return texts.join(QStringLiteral(", ")) +
                   QStringLiteral(" and %L1 more").arg(names.size() - mostNames);
        }
        texts.append(displayName(name));
    }
    return texts.join(QStringLiteral(", "));
}

} // namespace

QString selectionSizeText(const SelectionSize& size) {
    return (size.isWhole ? QStringLiteral("%1 would go") : QStringLiteral("at least %1 would go"))
        .arg(sizeText(size.goingBytes));
}

QString modelNote(const ModelDeletionPlan& plan) {
    QStringList lines;
    std::int64_t sharedBytes = 0;
    std::set<std::string> sharing;
    for (const ModelDeletionPlan::SharedBlob& blob : plan.sharedBlobs) {
        addBytes(sharedBytes, blob.logicalBytes);
        sharing.insert(blob.models.begin(), blob.models.end());
    }
    if (!sharing.empty()) {
        lines.append(
            QStringLiteral("%1 of it stay, shared with %2.").arg(sizeText(sharedBytes), listed(sharing)));
    }
    if (plan.bytesElsewhere > 0) {
        lines.append(QStringLiteral("%1 lie elsewhere, behind links in its folder, and stay.")
                         .arg(sizeText(plan.bytesElsewhere)));
    }
    if (lines.isEmpty()) {
        return {};
    }
    lines.prepend(QStringLiteral("Deleting it frees %1.").arg(sizeText(plan.files.freedBytes)));
    return lines.join(QLatin1Char('\n'));
}

QString remainingDataNote(const std::vector<std::string>& paths, const std::vector<std::int64_t>& sizes) {
    QStringList lines;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        lines.append(displayName(paths[i]) +
                     (i < sizes.size() ? QStringLiteral(" · ") + sizeText(sizes[i]) : QString()));
    }
    return lines.isEmpty() ? QString() : QStringLiteral("What remains:\n") + lines.join(QLatin1Char('\n'));
}

} // namespace zentrill
