#include "ui/InputGuard.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleHints>

#include <algorithm>
#include <utility>

namespace zentrill {

InputGuard::InputGuard(Clock clock, QObject* parent) : QObject(parent), clock_(std::move(clock)) {
    if (!clock_) {
        clock_ = [] { return std::chrono::steady_clock::now(); };
    }
    settling_.setSingleShot(true);
    settling_.setTimerType(Qt::PreciseTimer);
    connect(&settling_, &QTimer::timeout, this, &InputGuard::settle);
}

void InputGuard::setSurface(Surface surface) {
    if (surface == surface_) {
        return;
    }
    surface_ = surface;
    settling_.stop();
    stale_ = held_;
    if (lastKey_) {
        lastKey_->ofFormerSurface = isRecent(lastKey_->time);
    }
    if (lastClick_) {
        lastClick_->ofFormerSurface = isRecent(lastClick_->time);
    }
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
        settleAfterPause();
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
        const bool admitted = admitsPress(key);
        held_.insert(key);
        if (admitted) {
            stale_.erase(key);
        } else {
            stale_.insert(key);
        }
        return admitted;
    }
    if (lastKey_ && lastKey_->what == key) {
        lastKey_->time = clock_(); // What counts is how soon after its release it is pressed again.
    }
    held_.erase(key);
    return stale_.erase(key) == 0;
}

bool InputGuard::admits(const QMouseEvent& press) {
    return admitsClick(press.globalPosition().toPoint());
}

void InputGuard::forgetHeldKeys() {
    held_.clear();
    stale_.clear();
}

bool InputGuard::admitsPress(KeyCode key) {
    const bool repeatsFormer =
        lastKey_ && lastKey_->ofFormerSurface && lastKey_->what == key && isRecent(lastKey_->time);
    if (repeatsFormer) {
        lastKey_->time = clock_();
        if (settling_.isActive()) {
            settleAfterPause();
        }
        return false;
    }
    if (!settled_) {
        return false;
    }
    lastKey_ = {.what = key, .time = clock_()};
    return true;
}

bool InputGuard::admitsClick(QPoint place) {
    const int reach = QGuiApplication::styleHints()->mouseDoubleClickDistance();
    const bool repeatsFormer = lastClick_ && lastClick_->ofFormerSurface && isRecent(lastClick_->time) &&
                               (place - lastClick_->what).manhattanLength() <= reach;
    if (repeatsFormer || !settled_) {
        return false;
    }
    lastClick_ = {.what = place, .time = clock_()};
    return true;
}

void InputGuard::settle() {
    if (lastKey_) {
        lastKey_->ofFormerSurface = false;
    }
    setSettled(true);
}

void InputGuard::settleAfterPause() {
    std::chrono::milliseconds wait = reactionTime;
    if (lastKey_ && lastKey_->ofFormerSurface) {
        wait =
            std::max(wait, std::chrono::ceil<std::chrono::milliseconds>(lastKey_->time + pause() - clock_()));
    }
    settling_.start(wait);
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

std::chrono::milliseconds InputGuard::pause() {
    return std::chrono::milliseconds(QGuiApplication::styleHints()->mouseDoubleClickInterval());
}

} // namespace zentrill
