#include "ui/ProgressState.h"

#include "controller/DisplayText.h"

#include <QLocale>

#include <utility>

namespace zentrill {

namespace {

/// When an operation that counts nothing begins to show its time; most of them end sooner.
constexpr std::chrono::seconds timeAloneAfter{1};

QString timeText(std::chrono::seconds time) {
    constexpr int base = 60;
    const auto seconds = static_cast<qlonglong>(time.count());
    const auto twoDigits = [](qlonglong number) {
        return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
    };
    const qlonglong minutes = seconds / base;
    return minutes < base ? QStringLiteral("%1:%2").arg(minutes).arg(twoDigits(seconds % base))
                          : QStringLiteral("%1:%2:%3")
                                .arg(minutes / base)
                                .arg(twoDigits(minutes % base), twoDigits(seconds % base));
}

} // namespace

ProgressState::ProgressState(const UninstallerViewModel& controller, Clock clock, QObject* parent)
    : QObject(parent), controller_(controller), clock_(std::move(clock)) {
    timer_.setInterval(interval);
    connect(&timer_, &QTimer::timeout, this, &ProgressState::refresh);
    connect(&controller, &UninstallerViewModel::operationDescriptionChanged, this, &ProgressState::follow);
}

QString ProgressState::progressText(std::uint64_t removedCount, std::chrono::seconds time) {
    if (removedCount == 0) {
        return timeText(time);
    }
    const QString count =
        QLocale(QLocale::English, QLocale::UnitedStates).toString(static_cast<qulonglong>(removedCount));
    return QStringLiteral("%1 %2 · %3")
        .arg(count, removedCount == 1 ? QStringLiteral("item") : QStringLiteral("items"), timeText(time));
}

void ProgressState::refresh() {
    using std::chrono::seconds;
    if (!timer_.isActive()) {
        return;
    }
    DeletionProgress& progress = controller_.deletionProgress();
    const std::uint64_t removedCount = progress.removedCount();
    // Asked each time, so that the path shown is never a second old.
    const std::string path = progress.path();
    const auto time = std::chrono::duration_cast<seconds>(clock_() - begin_);
    if (removedCount == 0 && time < timeAloneAfter) {
        return;
    }
    setText(progressText(removedCount, time));
    if (time != spokenTime_) {
        spokenTime_ = time;
        setSpoken(text_, displayName(path));
    }
}

/// An operation sets the description last when it begins, and clears it last when it ends.
void ProgressState::follow() {
    spokenTime_ = std::chrono::seconds(-1);
    setText({});
    setSpoken({}, {});
    if (controller_.isBusy() && !controller_.isScanning()) {
        begin_ = clock_();
        timer_.start();
    } else {
        timer_.stop();
    }
}

void ProgressState::setText(const QString& text) {
    if (text != text_) {
        text_ = text;
        Q_EMIT textChanged();
    }
}

void ProgressState::setSpoken(const QString& text, const QString& path) {
    if (text != spokenText_ || path != path_) {
        spokenText_ = text;
        path_ = path;
        Q_EMIT spokenChanged();
    }
}

} // namespace zentrill
