#include "ui/ReviewState.h"

#include "controller/DisplayText.h"
#include "ui/models/Overloaded.h"

#include <algorithm>
#include <array>
#include <utility>
#include <variant>
#include <vector>

namespace zentrill {

namespace {

QString kindName(const ReviewRow& row) {
    constexpr std::array names{"heading", "item", "entry", "more", "remark"};
    return QString::fromLatin1(names.at(static_cast<std::size_t>(row.kind)));
}

QString fateName(const ReviewRow& row) {
    constexpr std::array names{"", "goes", "partly", "stays", "fails"};
    return QString::fromLatin1(names.at(static_cast<std::size_t>(row.fate)));
}

std::vector<RecordListModel<ReviewRow>::Role> roles() {
    return {{"kind", kindName},
            {"fate", fateName},
            {"label", [](const ReviewRow& row) { return row.text; }},
            {"sizeText", [](const ReviewRow& row) { return row.size; }},
            {"reason", [](const ReviewRow& row) { return row.reason; }}};
}

} // namespace

ReviewState::ReviewState(UninstallerViewModel& controller, QObject* parent)
    : QObject(parent), controller_(controller), rows_([](const ReviewRow& row) { return row.key; }, roles()) {
    connect(&controller_, &UninstallerViewModel::preserveCredentialsChanged, this, [this] {
        if (isShielded()) {
            compute();
        }
    });
    connect(&controller_, &UninstallerViewModel::isBusyChanged, this, [this] {
        if (controller_.isBusy()) {
            close();
        }
    });
}

QString ReviewState::title() const {
    if (!subject_) {
        return {};
    }
    const QString what =
        std::visit(Overloaded{
                       [](const std::vector<AppInfo>& tools) {
                           return tools.size() == 1 ? displayName(tools.front().displayName)
                                                    : QStringLiteral("%1 Applications").arg(tools.size());
                       },
                       [](const LocalModel& model) { return displayName(model.name); },
                       [](const DockerContainer& container) { return displayName(container.name); },
                       [](const DockerImage& image) { return displayName(image.displayName()); },
                   },
                   *subject_);
    return QStringLiteral("Review: ") + what;
}

bool ReviewState::isShielded() const {
    return subject_ && std::holds_alternative<std::vector<AppInfo>>(*subject_);
}

void ReviewState::open(ReviewSubject subject) {
    if (isShown() || controller_.isBusy()) {
        return;
    }
    subject_ = std::move(subject);
    listedEntries_ = ReviewWorker::firstEntries;
    compute();
    Q_EMIT shownChanged();
}

void ReviewState::close() {
    if (!isShown()) {
        return;
    }
    controller_.reviews().cancel();
    subject_.reset();
    show({});
    Q_EMIT shownChanged();
}

void ReviewState::listMore() {
    if (isShown() && canListMore()) {
        listedEntries_ = std::min(listedEntries_ * 10, mostEntries);
        start(Growing::hidden);
    }
}

void ReviewState::compute() {
    start(Growing::shown);
}

void ReviewState::start(Growing growing) {
    if (!subject_) {
        return;
    }
    // What was found so far stays in sight until there is more.
    content_.complete = false;
    Q_EMIT contentChanged();
    const auto take = [this, growing](const ReviewContent& content) {
        if (content.complete || growing == Growing::shown) {
            show(content);
        }
    };
    controller_.reviews().start(*subject_, safetyShield(controller_.preserveCredentials()), take,
                                listedEntries_);
}

void ReviewState::show(const ReviewContent& content) {
    rows_.setRecords(content.rows);
    content_.going = content.going;
    content_.comingFree = content.comingFree;
    content_.complete = content.complete;
    Q_EMIT contentChanged();
}

} // namespace zentrill
