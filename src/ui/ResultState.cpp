#include "ui/ResultState.h"

#include "ui/WarmPalette.h"

#include <algorithm>
#include <string>

namespace zentrill {

namespace {

constexpr QLatin1String separator("\nErrors:\n");

/// The row that announces a list, such as that of the paths left in place; negative when there is none.
int headingOf(const QStringList& lines) {
    for (int row = 0; row + 1 < lines.size(); ++row) {
        if (lines[row].endsWith(QLatin1Char(':'))) {
            return row;
        }
    }
    return -1;
}

} // namespace

ResultState::ResultState(const UninstallerViewModel& controller, QObject* parent)
    : QObject(parent), controller_(controller) {
    using Controller = UninstallerViewModel;
    connect(&controller, &Controller::resultAlertMessageChanged, this, &ResultState::readMessage);
    connect(&controller, &Controller::resultAlertOutcomeChanged, this, &ResultState::outcomeChanged);
    connect(&controller, &Controller::resultAlertRetainedPathCountChanged, this,
            &ResultState::retainedPathsChanged);
    readMessage();
}

QString ResultState::messageText(const QString& message) {
    const qsizetype cut = message.indexOf(separator);
    return cut < 0 ? message : message.left(cut);
}

QStringList ResultState::parsedErrorLines(const QString& message) {
    const qsizetype cut = message.indexOf(separator);
    if (cut < 0) {
        return {};
    }
    return message.mid(cut + separator.size()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QString ResultState::outcomeIcon() const {
    switch (controller_.resultAlertOutcome()) {
    case ResultOutcome::complete:
        return QStringLiteral("checkmark.circle.fill");
    case ResultOutcome::dataRemaining:
        return QStringLiteral("exclamationmark.circle");
    case ResultOutcome::errors:
        return QStringLiteral("xmark.circle");
    case ResultOutcome::unknown:
        break;
    }
    return QStringLiteral("questionmark.circle");
}

QString ResultState::outcomeLabel() const {
    const std::string_view label = statusLabel(controller_.resultAlertOutcome());
    return QString::fromUtf8(label.data(), static_cast<qsizetype>(label.size()));
}

QColor ResultState::outcomeColor() const {
    const WarmPalette palette;
    switch (controller_.resultAlertOutcome()) {
    case ResultOutcome::complete:
        return palette.success;
    case ResultOutcome::dataRemaining:
        return palette.copper;
    case ResultOutcome::errors:
        return palette.danger;
    case ResultOutcome::unknown:
        break;
    }
    return palette.secondary;
}

QByteArray ResultState::retainedPath(int row) const {
    std::string found;
    int next = firstPathRow_;
    for (const std::string& path : controller_.resultRetainedPaths()) {
        const int first = next;
        // A name can have line feeds, each of which begins a row.
        next += 1 + static_cast<int>(std::ranges::count(path, '\n'));
        if (row >= first && row < next) {
            found = path;
        }
    }
    return QByteArray::fromStdString(found);
}

void ResultState::readMessage() {
    const QString message = controller_.resultAlertMessage();
    const QStringList lines = messageText(message).split(QLatin1Char('\n'));
    const int heading = headingOf(lines);
    firstPathRow_ = heading + 1;
    messageLines_.setLines(lines, heading);
    errorLines_.setLines(parsedErrorLines(message));
}

} // namespace zentrill
