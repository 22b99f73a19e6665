#pragma once

#include "ui/KeyTimes.h"

#include <QQuickView>

#include <functional>
#include <memory>

namespace zentrill {

class ContentViewState;
class KeyboardUse;
class UninstallerViewModel;

/// The one window: owns the controller for its whole life and hands it to the QML view.
class ContentView : public QQuickView {
    Q_OBJECT

public:
    using ControllerFactory = std::function<std::unique_ptr<UninstallerViewModel>()>;

    /// Calls `makeController` once, while the views are being loaded beside it.
    explicit ContentView(const ControllerFactory& makeController);
    ~ContentView() override;

    ContentView(const ContentView&) = delete;
    ContentView& operator=(const ContentView&) = delete;
    ContentView(ContentView&&) = delete;
    ContentView& operator=(ContentView&&) = delete;

    [[nodiscard]] UninstallerViewModel& controller() const { return *controller_; }

    [[nodiscard]] ContentViewState& state() const { return *state_; }

Q_SIGNALS:
    /// A part of the views cannot be loaded, such as for a module that is not installed. `reason` names what
    /// is missing, in the words of the QML engine.
    void failed(const QString& reason);

protected:
    bool event(QEvent* event) override;
    bool nativeEvent(const QByteArray& type, void* message, qintptr* result) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    /// Looks up why that file cannot be loaded, and says so once the event loop runs.
    void reportFailure(const QUrl& file);
    void setKeyboardUsed(bool used);
    /// Gives a press to the items, and to the shortcuts what none of them takes.
    void deliverPress(QKeyEvent& press);
    /// Whether this is the press of a mouse button that was meant for what was there before.
    [[nodiscard]] bool isStalePress(const QEvent& event);

    std::unique_ptr<UninstallerViewModel> controller_;
    std::unique_ptr<ContentViewState> state_;
    /// The engine's; none when the views could not be loaded.
    KeyboardUse* keyboardUse_ = nullptr;
    KeyTimes keyTimes_;
    /// Whether the last press of the pointer counted: what comes of it does only then.
    bool pressAdmitted_ = true;
};

} // namespace zentrill
