#pragma once

#include <QByteArray>
#include <QEvent>

#include <deque>

QT_BEGIN_NAMESPACE
class QKeyEvent;
QT_END_NAMESPACE

namespace zentrill {

/// When keys were pressed and released. On X the toolkit's key events do not say that: their time is 0.
///
/// The window sees what the X server sent, with the server's time, before the toolkit turns it into a key
/// event. On other systems nothing is noted, and the events stay as they are.
class KeyTimes {
public:
    /// To be called for every native event of the window, as `QWindow::nativeEvent` gets it.
    void noteNativeEvent(const QByteArray& type, const void* message);

    /// Notes one key of that native code; `time` is in milliseconds.
    void note(QEvent::Type type, quint32 scanCode, quint64 time);

    /// Gives the event the time that was noted for it, if it has none itself. To be called for every key
    /// event, in order.
    void setTime(QKeyEvent& event);

private:
    struct Noted {
        QEvent::Type type;
        quint32 scanCode;
        quint64 time;
    };

    /// The oldest first.
    std::deque<Noted> noted_;
};

} // namespace zentrill
