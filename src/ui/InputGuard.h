#pragma once

#include <QObject>
#include <QPoint>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <chrono>
#include <functional>
#include <optional>
#include <unordered_set>

QT_BEGIN_NAMESPACE
class QKeyEvent;
class QMouseEvent;
QT_END_NAMESPACE

namespace zentrill {

/// Keeps what was meant for one surface from the one that takes its place: a key or a click counts for what
/// the person saw when it came.
///
///  - A key that is down while a modal opens or closes counts again once it was let go and pressed anew.
///  - After a modal closed, nothing counts before the window without it is on the screen; nor does the key
///    that closed it while it is pressed again as fast as a double click, nor the second click of one.
///  - A result takes neither keys nor clicks before it was in sight long enough to be seen, and before the
///    key that led to it has come to rest.
class InputGuard : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by ContentViewState")
    /// Whether what takes the input now was seen by the person.
    Q_PROPERTY(bool settled READ isSettled NOTIFY settledChanged FINAL)

public:
    /// What lies on top and takes the input.
    enum class Surface { window, confirmation, result };

    using TimePoint = std::chrono::steady_clock::time_point;
    using Clock = std::function<TimePoint()>;

    /// Nobody reacts faster to what comes into sight.
    static constexpr std::chrono::milliseconds reactionTime{250};

    /// `clock` tells the present time; the system's steady clock without one.
    explicit InputGuard(Clock clock = {}, QObject* parent = nullptr);

    [[nodiscard]] bool isSettled() const { return settled_; }

    void setSurface(Surface surface);

    /// The window has been drawn as it is now.
    void noteFrame();

    /// Whether the press, repetition or release of a key, or the press of a mouse button, counts; to be asked
    /// for each, in order.
    [[nodiscard]] bool admits(const QKeyEvent& event);
    [[nodiscard]] bool admits(const QMouseEvent& press);

    /// The window does not learn any more which keys are let go.
    void forgetHeldKeys();

Q_SIGNALS:
    void settledChanged();

private:
    using KeyCode = quint32;

    /// The last press of one key or place, and whether what follows it as fast as a double click belongs to
    /// it: it was made for another surface.
    template <typename What>
    struct LastPress {
        What what{};
        TimePoint time;
        bool ofFormerSurface = false;
    };

    [[nodiscard]] static KeyCode code(const QKeyEvent& event);
    [[nodiscard]] static std::chrono::milliseconds pause();

    [[nodiscard]] bool isRecent(TimePoint press) const { return clock_() - press < pause(); }

    [[nodiscard]] bool admitsPress(KeyCode key);
    [[nodiscard]] bool admitsClick(QPoint place);
    void settle();
    void settleAfterPause();
    void setSettled(bool settled);

    Clock clock_;
    Surface surface_ = Surface::window;
    bool settled_ = true;
    bool awaitsFrame_ = false;
    QTimer settling_;
    std::unordered_set<KeyCode> held_;
    /// Those of the held ones that do not count until they are pressed anew.
    std::unordered_set<KeyCode> stale_;
    std::optional<LastPress<KeyCode>> lastKey_;
    std::optional<LastPress<QPoint>> lastClick_;
};

} // namespace zentrill
