#include "ui/InputGuard.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleHints>

namespace zentrill {

InputGuard::InputGuard(QObject* parent) : QObject(parent) {
    settling_.setSingleShot(true);
    connect(&settling_, &QTimer::timeout, this, &InputGuard::settle);
}

void InputGuard::setSurface(Surface surface) {
    if (surface == surface_) {
        return;
    }
    surface_ = surface;
    settling_.stop();
    stale_ = held_;
    lastKey_.ofFormerSurface = lastKey_.isThere;
    lastClick_.ofFormerSurface = lastClick_.isThere;
    // A confirmation asks for a code, which nobody has typed by mistake.
    awaitsFrame_ = surface_ != Surface::confirmation;
    setSettled(!awaitsFrame_);
}

void InputGuard::noteFrame() {
    if (!awaitsFrame_) {
        return;
    }
    awaitsFrame_ = false;
    if (surface_ == Surface::result) {
        startSettling();
    } else {
        setSettled(true);
    }
}

bool InputGuard::admits(const QKeyEvent& event) {
    const KeyCode key = code(event);
    if (event.isAutoRepeat()) {
        return held_.contains(key) && !stale_.contains(key);
    }
    if (event.type() == QEvent::KeyPress) {
        // A repetition whose release was read by itself: nobody lets go and presses within the same instant.
        const bool repeats =
            lastRelease_.isThere && lastRelease_.what == key && lastRelease_.time == event.timestamp();
        const bool admitted = !repeats && admitsPress(key, event.timestamp());
        held_.insert(key);
        if (admitted) {
            stale_.erase(key);
        } else {
            stale_.insert(key);
        }
        return admitted;
    }
    if (lastKey_.isThere && lastKey_.what == key) {
        lastKey_.time = event.timestamp(); // What counts is how soon after its release it is pressed again.
    }
    lastRelease_ = {.isThere = true, .what = key, .time = event.timestamp()};
    held_.erase(key);
    return stale_.erase(key) == 0;
}

bool InputGuard::admits(const QMouseEvent& press) {
    const QPoint place = press.globalPosition().toPoint();
    const int reach = QGuiApplication::styleHints()->mouseDoubleClickDistance();
    const bool isSecond =
        lastClick_.goesOnAt(press.timestamp()) && (place - lastClick_.what).manhattanLength() <= reach;
    if (isSecond || !settled_) {
        return false;
    }
    lastClick_ = {.isThere = true, .what = place, .time = press.timestamp()};
    return true;
}

void InputGuard::forgetHeldKeys() {
    held_.clear();
    stale_.clear();
}

bool InputGuard::admitsPress(KeyCode key, Timestamp time) {
    if (lastKey_.what == key && lastKey_.goesOnAt(time)) {
        lastKey_.time = time;
        if (settling_.isActive()) {
            startSettling();
        }
        return false;
    }
    if (!settled_) {
        return false;
    }
    lastKey_ = {.isThere = true, .what = key, .time = time};
    return true;
}

void InputGuard::settle() {
    lastKey_.ofFormerSurface = false;
    setSettled(true);
}

void InputGuard::startSettling() {
    settling_.start(static_cast<int>(pause()));
}

void InputGuard::setSettled(bool settled) {
    if (settled != settled_) {
        settled_ = settled;
        Q_EMIT settledChanged();
    }
}

InputGuard::KeyCode InputGuard::code(const QKeyEvent& event) {
    // The key itself: what it stands for changes with the modifiers while it is down.
    return event.nativeScanCode() != 0 ? event.nativeScanCode() : static_cast<KeyCode>(event.key());
}

quint64 InputGuard::pause() {
    return static_cast<quint64>(QGuiApplication::styleHints()->mouseDoubleClickInterval());
}

} // namespace zentrill
