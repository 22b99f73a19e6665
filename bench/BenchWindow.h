#pragma once

#include "ui/ContentView.h"

#include <QQuickItem>

#include <functional>
#include <memory>
#include <string>

namespace zentrill::bench {

/// The peak of this process's proportional set, in bytes: what is shared with other programs does not count.
/// `forgetPeakMemory` begins anew.
[[nodiscard]] double peakProportionalMemory();
void forgetPeakMemory();

/// Runs the event loop until the condition holds; ends the benchmark after a minute.
void runUntil(const std::function<bool()>& condition);

/// The first item below this one that is wanted, or null.
[[nodiscard]] QQuickItem* findItem(const QQuickItem& item,
                                   const std::function<bool(const QQuickItem&)>& wanted);

/// Runs the trial as an application on this display, with an empty home folder, whose path it is given.
/// Returns whether it passed.
[[nodiscard]] bool passesOnDisplay(const std::string& display,
                                   const std::function<bool(const std::string& home)>& trial);

/// The main window of 950 × 700 pixels, drawn.
class BenchWindow {
public:
    /// `tab` is "apps", "models", "docker" or "console".
    BenchWindow(std::unique_ptr<UninstallerViewModel> controller, const char* tab);

    [[nodiscard]] ContentViewState& state() const { return view_.state(); }

    [[nodiscard]] UninstallerViewModel& controller() const { return view_.controller(); }

    [[nodiscard]] const QQuickItem& content() const { return *view_.contentItem(); }

    /// How many were drawn so far.
    [[nodiscard]] int frames() const { return frames_; }

    /// Makes the change and runs the window until the next frame was drawn; in seconds.
    [[nodiscard]] double secondsToFrame(const std::function<void()>& change);

private:
    ContentView view_;
    int frames_ = 0;
};

} // namespace zentrill::bench
