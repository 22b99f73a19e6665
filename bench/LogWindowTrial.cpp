#include "BenchWindow.h"
#include "LogTrial.h"
#include "ui/ContentViewState.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <chrono>
#include <thread>

namespace zentrill::bench {

namespace {

/// The main window with the console in it.
class ConsoleWindow {
public:
    ConsoleWindow() : window_(makeQuietController(), "console") {
        runUntil([this] { return list() != nullptr; });
    }

    [[nodiscard]] UninstallerViewModel& controller() const { return window_.controller(); }

    [[nodiscard]] ContentViewState& state() const { return window_.state(); }

    [[nodiscard]] double secondsToFrame(const std::function<void()>& change) {
        return window_.secondsToFrame(change);
    }

    [[nodiscard]] int frames() const { return window_.frames(); }

    /// Runs the window until its console shows the last of the lines, and a frame with it was drawn.
    void runUntilAllIsShown() {
        runUntil([this] { return controller().logs().size() == logLineCount && showsLastLine(); });
        (void)window_.secondsToFrame([] {});
    }

private:
    [[nodiscard]] QQuickItem* list() const {
        return findItem(window_.content(), [](const QQuickItem& item) {
            return QString::fromLatin1(item.metaObject()->className())
                .startsWith(QLatin1String("LineListView"));
        });
    }

    [[nodiscard]] bool showsLastLine() const {
        const QString last = QString::fromStdString(logLine(logLineCount - 1));
        const QQuickItem& lines = *list();
        return findItem(lines, [&](const QQuickItem& item) {
                   return item.property("entry").toString().endsWith(last) &&
                          item.mapToItem(&lines, item.boundingRect().bottomLeft()).y() <= lines.height();
               }) != nullptr;
    }

    BenchWindow window_;
};

/// The frames a second that keep a list readable while it runs, and more than a window in arrears draws.
constexpr double fewestFrames = 10;

bool stream() {
    ConsoleWindow window;
    const int before = window.frames();
    const auto begin = std::chrono::steady_clock::now();
    const Heartbeat heartbeat;
    std::thread worker([&] { writeLog(window.controller()); });
    window.runUntilAllIsShown();
    worker.join();
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    const bool turns = reportTurns("log: a stream of a million lines, shown", heartbeat);
    return reportLimit("log: seconds a frame during the stream", seconds / (window.frames() - before),
                       1 / fewestFrames) &&
           turns;
}

bool burst() {
    ConsoleWindow window;
    forgetPeakMemory();
    std::thread worker([&] { writeLog(window.controller()); });
    worker.join();
    bool pass = true;
    {
        const Heartbeat heartbeat;
        window.runUntilAllIsShown();
        pass = reportTurns("log: a burst of a million lines, shown", heartbeat);
    }
    pass = reportLimit("log: peak proportional memory with the window and a million lines, bytes",
                       peakProportionalMemory(), mostLogMemory) &&
           pass;
    const Heartbeat heartbeat;
    window.controller().clearLogs();
    constexpr int turnsOfFreeing = 200;
    for (int turn = 0; turn < turnsOfFreeing; ++turn) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return reportTurns("log: clearing a million lines, shown", heartbeat) && pass;
}

/// As many paths that the Safety Shield kept, which the console shows as one line until it is opened.
bool folded() {
    ConsoleWindow window;
    forgetPeakMemory();
    std::thread worker([&] {
        for (int line = 0; line < logLineCount; ++line) {
            window.controller().log("[Safety Shield] Preserved: /Users/someone/" + std::to_string(line));
        }
    });
    worker.join();
    bool pass = true;
    FoldedLogModel& log = *window.state().logs();
    {
        const Heartbeat heartbeat;
        runUntil([&] { return window.controller().logs().size() == logLineCount && log.rowCount() == 1; });
        pass = reportTurns("log: a burst of a million folded lines, shown", heartbeat);
    }
    pass = reportLimit("log: seconds until they are unfolded and drawn",
                       window.secondsToFrame([&] { log.toggle(0); }), longestTurn) &&
           pass;
    pass = reportLimit("log: seconds until they are folded and drawn",
                       window.secondsToFrame([&] { log.toggle(0); }), longestTurn) &&
           pass;
    return reportLimit("log: peak proportional memory with the window and a million folded lines, bytes",
                       peakProportionalMemory(), mostLogMemory) &&
           pass;
}

} // namespace

bool passesWithWindow(const std::string& display) {
    return passesOnDisplay(display, [](const std::string& /*home*/) {
        const bool bursting = burst();
        const bool folding = folded();
        return stream() && bursting && folding;
    });
}

} // namespace zentrill::bench
