#include "ui/InputGuard.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleHints>

namespace zentrill {

InputGuard::InputGuard(QObject* parent) : QObject(parent) {
    clock_.start();
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
    lastRelease_.wasStale = true;
    // A confirmation asks for a code, which nobody types by mistake, and Escape may close it at any time.
    const bool asksForCode = surface_ == Surface::confirmation;
    lastKey_.ofFormerSurface = lastKey_.isThere && !asksForCode;
    lastClick_.ofFormerSurface = lastClick_.isThere;
    awaitsFrame_ = !asksForCode;
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

bool InputGuard::isRepetition(const QKeyEvent& press) const {
    const bool tellsItsTime = press.timestamp() != 0;
    return tellsItsTime && !press.isAutoRepeat() && lastRelease_.goesOnWith(code(press), press.timestamp());
}

bool InputGuard::admits(const QKeyEvent& event) {
    const KeyCode key = code(event);
    if (event.isAutoRepeat()) {
        return admitsRepetition(key, timeOf(event));
    }
    if (event.type() == QEvent::KeyPress) {
        const bool admitted = admitsPress(key, timeOf(event));
        held_.insert(key);
        if (admitted) {
            stale_.erase(key);
        } else {
            stale_.insert(key);
        }
        return admitted;
    }
    if (lastKey_.isThere && lastKey_.what == key) {
        lastKey_.time = timeOf(event); // What matters is how soon after its release it is pressed again.
    }
    held_.erase(key);
    const bool wasStale = stale_.erase(key) != 0;
    lastRelease_ = {.isThere = true, .key = key, .time = timeOf(event), .wasStale = wasStale};
    return !wasStale;
}

bool InputGuard::admits(const QMouseEvent& press) {
    const QPoint place = press.globalPosition().toPoint();
    const int reach = QGuiApplication::styleHints()->mouseDoubleClickDistance();
    const Timestamp now = timeOf(press);
    const bool isSecond = lastClick_.goesOnAt(now) && (place - lastClick_.what).manhattanLength() <= reach;
    if (isSecond || !settled_) {
        return false;
    }
    lastClick_ = {.isThere = true, .what = place, .time = now};
    return true;
}

void InputGuard::forgetHeldKeys() {
    held_.clear();
    stale_.clear();
}

bool InputGuard::admitsRepetition(KeyCode key, Timestamp time) {
    if (!held_.contains(key) && lastRelease_.goesOnWith(key, time)) {
        held_.insert(key); // It was not released.
        if (lastRelease_.wasStale) {
            stale_.insert(key);
        }
    }
    return held_.contains(key) && !stale_.contains(key);
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
    // The physical key, because its meaning changes with the modifiers while it is down.
    return event.nativeScanCode() != 0 ? event.nativeScanCode() : static_cast<KeyCode>(event.key());
}

InputGuard::Timestamp InputGuard::timeOf(const QInputEvent& event) const {
    return event.timestamp() != 0 ? event.timestamp() : static_cast<Timestamp>(clock_.elapsed());
}

quint64 InputGuard::pause() {
    return static_cast<quint64>(QGuiApplication::styleHints()->mouseDoubleClickInterval());
}

} // namespace zentrill
