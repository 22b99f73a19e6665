#include "entry/WindowFrameAutosave.h"

#include "platform/PropertyList.h"

#include <QGuiApplication>
#include <QScreen>
#include <QStringList>
#include <QWindow>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>

namespace zentrill {

namespace {

/// A drag or a resize is written once it has come to rest.
constexpr std::chrono::milliseconds restTime{400};

/// How much of the top edge must be in sight to grab the window.
constexpr QSize handle{120, 40};

/// The assumed height of a title bar. The real one is known only once the window is shown.
constexpr int titleBarHeight = 36;

/// Larger than any screen; a larger saved number means that the file is damaged.
constexpr int largestCoordinate = 1 << 20;

} // namespace

WindowFrameAutosave::WindowFrameAutosave(QWindow& window, std::string propertyList, QObject* parent)
    : QObject(parent), window_(window), propertyList_(std::move(propertyList)) {
    settled_.setSingleShot(true);
    settled_.setInterval(restTime);
    connect(&settled_, &QTimer::timeout, this, &WindowFrameAutosave::write);
    connect(&window_, &QWindow::xChanged, this, &WindowFrameAutosave::noteChange);
    connect(&window_, &QWindow::yChanged, this, &WindowFrameAutosave::noteChange);
    connect(&window_, &QWindow::widthChanged, this, &WindowFrameAutosave::noteChange);
    connect(&window_, &QWindow::heightChanged, this, &WindowFrameAutosave::noteChange);
}

void WindowFrameAutosave::setAutosaveName(const QString& name) {
    settled_.stop();
    name_ = name;
    if (name_.isEmpty()) {
        return;
    }
    restore();
    // If nothing was saved, changes are compared with where the system has placed the window.
    if (saved_.isEmpty()) {
        settled_.start();
    }
}

bool WindowFrameAutosave::save() {
    if (!settled_.isActive()) {
        return true;
    }
    settled_.stop();
    return write();
}

bool WindowFrameAutosave::write() {
    // A maximised or minimised window keeps the frame that it had before.
    if (name_.isEmpty() || propertyList_.empty() || window_.windowStates() != Qt::WindowNoState) {
        return true;
    }
    const QScreen* screen = window_.screen();
    const QString now = text(window_.geometry(), screen != nullptr ? screen->availableGeometry() : QRect());
    // Nobody chose the place where the system first put the window.
    if (saved_.isEmpty()) {
        saved_ = now;
    }
    if (now == saved_) {
        return true;
    }
    if (!setPropertyListString(propertyList_, key(), now.toStdString())) {
        return false;
    }
    saved_ = now;
    return true;
}

QString WindowFrameAutosave::text(const QRect& frame, const QRect& screen) {
    return QStringLiteral("%1 %2 %3 %4 %5 %6 %7 %8")
        .arg(frame.x())
        .arg(frame.y())
        .arg(frame.width())
        .arg(frame.height())
        .arg(screen.x())
        .arg(screen.y())
        .arg(screen.width())
        .arg(screen.height());
}

std::optional<QRect> WindowFrameAutosave::frame(const QString& text) {
    const QStringList parts = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    std::array<int, 4> numbers{};
    if (parts.size() < static_cast<qsizetype>(numbers.size())) {
        return std::nullopt;
    }
    for (std::size_t index = 0; index < numbers.size(); ++index) {
        bool isNumber = false;
        const double value = parts[static_cast<qsizetype>(index)].toDouble(&isNumber);
        if (!isNumber || std::isnan(value) || std::abs(value) > largestCoordinate) {
            return std::nullopt;
        }
        numbers.at(index) = static_cast<int>(value);
    }
    const QRect result(numbers[0], numbers[1], numbers[2], numbers[3]);
    if (result.width() <= 0 || result.height() <= 0) {
        return std::nullopt;
    }
    return result;
}

QRect WindowFrameAutosave::room(const QRect& geometry) {
    return geometry.adjusted(0, titleBarHeight, 0, 0);
}

QRect WindowFrameAutosave::broughtBack(QRect frame, const QList<QRect>& screens, QSize minimum) {
    if (screens.isEmpty()) {
        return frame;
    }
    const auto holds = [&](const QRect& screen) {
        const QRect visible =
            screen.intersected(QRect(frame.topLeft(), QSize(frame.width(), handle.height())));
        return visible.width() >= std::min(handle.width(), frame.width()) &&
               visible.height() >= handle.height();
    };
    const auto found = std::ranges::find_if(screens, holds);
    const QRect screen = found == screens.end() ? screens.front() : *found;
    frame.setSize(frame.size().expandedTo(minimum));
    if (found == screens.end()) {
        frame.moveCenter(screen.center());
    }
    if (frame.width() > screen.width() || frame.height() > screen.height()) {
        const QRect available = room(screen);
        frame.setSize(frame.size().boundedTo(available.size()));
        frame.moveRight(std::min(frame.right(), available.right()));
        frame.moveBottom(std::min(frame.bottom(), available.bottom()));
        frame.moveLeft(std::max(frame.left(), available.left()));
        frame.moveTop(std::max(frame.top(), available.top()));
    }
    return frame;
}

void WindowFrameAutosave::restore() {
    if (propertyList_.empty()) {
        return;
    }
    saved_ = QString::fromStdString(propertyListString(propertyList_, key()).value_or(""));
    const std::optional<QRect> frame = WindowFrameAutosave::frame(saved_);
    if (!frame) {
        return;
    }
    QList<QRect> screens;
    for (const QScreen* screen : QGuiApplication::screens()) {
        screens.append(screen->availableGeometry());
    }
    const QRect placed = broughtBack(*frame, screens, window_.minimumSize());
    window_.setGeometry(placed);
    // If a frame was made to fit the screen, the saved one is still what the person chose.
    if (placed != *frame) {
        saved_.clear();
    }
}

void WindowFrameAutosave::noteChange() {
    if (!name_.isEmpty()) {
        settled_.start();
    }
}

std::string WindowFrameAutosave::key() const {
    return "NSWindow Frame " + name_.toStdString();
}

} // namespace zentrill
