#pragma once

#include "entry/WindowFrameAutosave.h"

#include <QObject>

#include <functional>
#include <memory>
#include <string>

class QWindow;

namespace zentrill {

/// Builds the one main window when the application has launched and keeps it for the program's life.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    /// Makes the main view, the window that the delegate then sizes, places, names and shows.
    using MainViewFactory = std::function<std::unique_ptr<QWindow>()>;

    /// `preferences` is the property list that keeps the window's frame; empty to keep none.
    AppDelegate(MainViewFactory makeMainView, std::string preferences);
    ~AppDelegate() override;

    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;
    AppDelegate(AppDelegate&&) = delete;
    AppDelegate& operator=(AppDelegate&&) = delete;

    /// Shows the window. Called once, after launch.
    void applicationDidFinishLaunching();

    /// Always true: the program ends with its window.
    [[nodiscard]] static bool applicationShouldTerminateAfterLastWindowClosed() { return true; }

    /// The main window; none before the launch.
    [[nodiscard]] QWindow* window() const { return window_.get(); }

    /// Empties the frame autosave name, so that nothing of the window is saved again.
    void forgetWindowState();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    MainViewFactory makeMainView_;
    std::string preferences_;
    std::unique_ptr<QWindow> window_;
    std::unique_ptr<WindowFrameAutosave> frame_;
};

} // namespace zentrill
