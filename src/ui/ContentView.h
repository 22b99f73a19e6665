#pragma once

#include <QQuickView>

#include <memory>

namespace zentrill {

class ContentViewState;
class UninstallerViewModel;

/// The one window: owns the controller for its whole life and hands it to the QML view.
class ContentView : public QQuickView {
    Q_OBJECT

public:
    explicit ContentView(std::unique_ptr<UninstallerViewModel> controller);
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
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    /// Looks up why that file cannot be loaded, and says so once the event loop runs.
    void reportFailure(const QUrl& file);

    std::unique_ptr<UninstallerViewModel> controller_;
    std::unique_ptr<ContentViewState> state_;
};

} // namespace zentrill
