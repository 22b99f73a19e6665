#include "ui/models/ListSummary.h"

#include "controller/DisplayText.h"
#include "platform/ByteCountFormatter.h"
#include "platform/ByteSum.h"

#include <QLocale>
#include <QStringList>

#include <algorithm>

namespace zentrill {

namespace {

struct Total {
    std::size_t count = 0;
    std::size_t unknown = 0;
    std::int64_t bytes = 0;

    void add(const LocalModel& model) {
        ++count;
        unknown += model.sizeBytes < 1 ? 1 : 0;
        addBytes(bytes, std::max<std::int64_t>(0, model.sizeBytes));
    }
};

/// "10,000".
QString grouped(std::size_t number) {
    return QLocale(QLocale::English, QLocale::UnitedStates).toString(static_cast<qulonglong>(number));
}

QString counted(std::size_t count, const char* one, const char* several) {
    return QStringLiteral("%1 %2").arg(grouped(count), QLatin1String(count == 1 ? one : several));
}

QString totalText(const Total& total) {
    const QString count = counted(total.count, "model", "models");
    return total.bytes == 0 ? count
                            : count + QStringLiteral(" · ") + displayName(formattedByteCount(total.bytes));
}

} // namespace

QString modelTotals(const std::vector<LocalModel>& models) {
    Total total;
    for (const LocalModel& model : models) {
        total.add(model);
    }
    return totalText(total);
}

QString modelTotalsBySource(const std::vector<LocalModel>& models) {
    QStringList lines;
    std::size_t unknown = 0;
    for (const std::string_view source : {ollamaSource, huggingFaceSource, lmStudioSource}) {
        Total total;
        for (const LocalModel& model : models) {
            if (model.source == source) {
                total.add(model);
            }
        }
        unknown += total.unknown;
        if (total.count > 0) {
            lines.append(displayName(source) + QStringLiteral(": ") + totalText(total));
        }
    }
    if (unknown > 0) {
        lines.append(QStringLiteral("Without %1 of unknown size.").arg(counted(unknown, "model", "models")));
    }
    lines.append(QStringLiteral("Files that several models share are counted for each of them."));
    return lines.join(QLatin1Char('\n'));
}

QString dockerTotals(std::size_t containers, std::size_t images) {
    return counted(containers, "container", "containers") + QStringLiteral(" · ") +
           counted(images, "image", "images");
}

QString shownText(std::size_t shown, std::size_t all) {
    return QStringLiteral("%1 of %2 shown").arg(grouped(shown), grouped(all));
}

} // namespace zentrill
