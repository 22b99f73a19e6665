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

    /// Calls `makeController` once, when the views are loaded: a scan that it begins does not hold up the
    /// window.
    explicit ContentView(const ControllerFactory& makeController);
    ~ContentView() override;

    ContentView(const ContentView&) = delete;
    ContentView& operator=(const ContentView&) = delete;
    ContentView(ContentView&&) = delete;
    ContentView& operator=(ContentView&&) = delete;

    [[nodiscard]] UninstallerViewModel& controller() const { return *controller_; }

    [[nodiscard]] ContentViewState& state() const { return *state_; }

Q_SIGNALS:
    /// A part of the views cannot be loaded, for example because a module is not installed. `reason` says
    /// what is missing, in the words of the QML engine.
    void failed(const QString& reason);

protected:
    bool event(QEvent* event) override;
    bool nativeEvent(const QByteArray& type, void* message, qintptr* result) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    /// Finds out why the file cannot be loaded, and says so once the event loop runs.
    void reportFailure(const QUrl& file);
    void setKeyboardUsed(bool used);
    /// Gives a press to the items, and then to the shortcuts if no item takes it.
    void deliverPress(QKeyEvent& press);
    /// Whether this is the press of a mouse button that was meant for what was shown before.
    [[nodiscard]] bool isStalePress(const QEvent& event);

    std::unique_ptr<UninstallerViewModel> controller_;
    std::unique_ptr<ContentViewState> state_;
    /// The state of the views; null if they could not be loaded.
    KeyboardUse* keyboardUse_ = nullptr;
    KeyTimes keyTimes_;
    /// Whether the last press of the pointer counted; otherwise what follows from it does not count either.
    bool pressAdmitted_ = true;
};

} // namespace zentrill
