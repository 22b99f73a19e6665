#include "ui/KeyTimes.h"

#include <QKeyEvent>

#include <algorithm>

#ifdef Q_OS_LINUX
#include <xcb/xcb.h>
#endif

namespace zentrill {

namespace {

/// More than the toolkit ever leaves unread. An input method takes some, which are never asked for.
constexpr std::size_t notedLimit = 256;

} // namespace

void KeyTimes::noteNativeEvent(const QByteArray& type, const void* message) {
#ifdef Q_OS_LINUX
    if (type != "xcb_generic_event_t") {
        return;
    }
    constexpr unsigned sentByAClient = 0x80;
    const auto* const event = static_cast<const xcb_generic_event_t*>(message);
    const unsigned kind = event->response_type & ~sentByAClient;
    if (kind == XCB_KEY_PRESS || kind == XCB_KEY_RELEASE) {
        // A release has the layout of a press.
        const auto* const key = static_cast<const xcb_key_press_event_t*>(message);
        note(kind == XCB_KEY_PRESS ? QEvent::KeyPress : QEvent::KeyRelease, key->detail, key->time);
    }
#else
    static_cast<void>(type);
    static_cast<void>(message);
#endif
}

void KeyTimes::note(QEvent::Type type, quint32 scanCode, quint64 time) {
    if (noted_.size() == notedLimit) {
        noted_.pop_front();
    }
    noted_.push_back({.type = type, .scanCode = scanCode, .time = time});
}

void KeyTimes::setTime(QKeyEvent& event) {
    const auto noted = std::ranges::find_if(noted_, [&](const Noted& one) {
        return one.type == event.type() && one.scanCode == event.nativeScanCode();
    });
    if (noted == noted_.end()) {
        return;
    }
    if (event.timestamp() == 0) {
        event.setTimestamp(noted->time);
    }
    // Those before it did not become events of the window.
    noted_.erase(noted_.begin(), noted + 1);
}

} // namespace zentrill
