#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPoint>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <unordered_set>

QT_BEGIN_NAMESPACE
class QInputEvent;
class QKeyEvent;
class QMouseEvent;
QT_END_NAMESPACE

namespace zentrill {

/// Keeps input that was meant for one surface away from the one that replaces it: a key or a click counts for
/// what the person saw at the time.
///
///  - A key that is down while a modal opens or closes counts again once it was let go and pressed anew.
///  - After a modal closed, nothing counts before the window without it is on the screen; nor does the key
///    that closed it while it is pressed again as fast as a double click, nor the second click of one.
///  - A result takes neither keys nor clicks before it was in sight for the time of a double click, in which
///    nobody has seen it, and before the key that led to it has come to rest.
class InputGuard : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by ContentViewState")
    /// Whether the person can have seen what takes the input now.
    Q_PROPERTY(bool settled READ isSettled NOTIFY settledChanged FINAL)

public:
    /// The surface on top, which takes the input.
    enum class Surface { window, review, confirmation, result };

    explicit InputGuard(QObject* parent = nullptr);

    [[nodiscard]] bool isSettled() const { return settled_; }

    void setSurface(Surface surface);

    /// To be called when the window has been drawn as it is now.
    void noteFrame();

    /// Whether a press is really the repetition of a held key: the toolkit recognises that only if it reads
    /// the release and the press together. Nobody can release and press a key in the same instant.
    [[nodiscard]] bool isRepetition(const QKeyEvent& press) const;

    /// Whether the press, repetition or release of a key, or the press of a mouse button, counts; to be asked
    /// for each, in order.
    [[nodiscard]] bool admits(const QKeyEvent& event);
    [[nodiscard]] bool admits(const QMouseEvent& press);

    /// To be called when the window no longer learns which keys are released.
    void forgetHeldKeys();

Q_SIGNALS:
    void settledChanged();

private:
    using KeyCode = quint32;
    /// In milliseconds: the time of the event itself, however late it is read, or the time of reading for
    /// events without one.
    using Timestamp = quint64;

    /// The last press of one key or place, and whether what follows it as fast as a double click belongs to
    /// it: it was made for another surface.
    template <typename What>
    struct LastPress {
        bool isThere = false;
        What what{};
        Timestamp time = 0;
        bool ofFormerSurface = false;

        [[nodiscard]] bool goesOnAt(Timestamp now) const { return ofFormerSurface && now < time + pause(); }
    };

    struct LastRelease {
        bool isThere = false;
        KeyCode key = 0;
        Timestamp time = 0;
        bool wasStale = false;

        [[nodiscard]] bool goesOnWith(KeyCode pressed, Timestamp now) const {
            return isThere && key == pressed && time == now;
        }
    };

    [[nodiscard]] static KeyCode code(const QKeyEvent& event);
    [[nodiscard]] Timestamp timeOf(const QInputEvent& event) const;
    /// Presses further apart than this, in milliseconds, do not belong together.
    [[nodiscard]] static quint64 pause();

    [[nodiscard]] bool admitsRepetition(KeyCode key, Timestamp time);
    [[nodiscard]] bool admitsPress(KeyCode key, Timestamp time);
    void settle();
    void startSettling();
    void setSettled(bool settled);

    Surface surface_ = Surface::window;
    bool settled_ = true;
    bool awaitsFrame_ = false;
    QTimer settling_;
    QElapsedTimer clock_;
    std::unordered_set<KeyCode> held_;
    /// The held keys that do not count until they are pressed again.
    std::unordered_set<KeyCode> stale_;
    LastPress<KeyCode> lastKey_;
    LastPress<QPoint> lastClick_;
    LastRelease lastRelease_;
};

} // namespace zentrill
