#include "LogTrial.h"
#include "ui/ContentView.h"
#include "ui/ContentViewState.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QGuiApplication>
#include <QQuickItem>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <thread>

namespace zentrill::bench {

namespace {

/// A figure of a file of this process's, such as "Pss:" of "smaps_rollup", in bytes.
double kilobytesLine(const char* file, const std::string& name) {
    std::ifstream stream(std::string("/proc/self/") + file);
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with(name)) {
            return std::strtod(line.c_str() + name.size(), nullptr) * 1024;
        }
    }
    std::fprintf(stderr, "bench_log: no %s in %s\n", name.c_str(), file);
    std::exit(2);
}

/// The peak of the proportional set: what is shared with other programs does not change meanwhile.
double peakProportionalMemory() {
    const double shared = kilobytesLine("smaps_rollup", "Rss:") - kilobytesLine("smaps_rollup", "Pss:");
    return kilobytesLine("status", "VmHWM:") - shared;
}

void forgetPeakMemory() {
    std::ofstream("/proc/self/clear_refs") << "5";
}

void runUntil(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            std::fprintf(stderr, "bench_log: the window does not show what it should\n");
            std::exit(2);
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

/// The main window with the console in it.
class ConsoleWindow {
public:
    ConsoleWindow() : view_(makeQuietController()) {
        view_.state().setSelectedTab(QStringLiteral("console"));
        view_.resize(950, 700);
        QObject::connect(&view_, &QQuickWindow::frameSwapped, &view_, [this] { ++frames_; });
        view_.show();
        runUntil([this] { return frames_ > 1 && list() != nullptr; });
    }

    [[nodiscard]] UninstallerViewModel& controller() const { return view_.controller(); }

    [[nodiscard]] int frames() const { return frames_; }

    /// Runs the window until its console shows the last of the lines, and a frame with it was drawn.
    void runUntilAllIsShown() {
        runUntil([this] { return controller().logs().size() == logLineCount && showsLastLine(); });
        const int before = frames_;
        view_.requestUpdate();
        runUntil([&] { return frames_ > before; });
    }

private:
    [[nodiscard]] QQuickItem* list() const {
        return find(*view_.contentItem(), [](const QQuickItem& item) {
            return QString::fromLatin1(item.metaObject()->className())
                .startsWith(QLatin1String("LineListView"));
        });
    }

    [[nodiscard]] bool showsLastLine() const {
        const QString last = QString::fromStdString(logLine(logLineCount - 1));
        const QQuickItem& lines = *list();
        return find(lines, [&](const QQuickItem& item) {
                   return item.property("entry").toString().endsWith(last) &&
                          item.mapToItem(&lines, item.boundingRect().bottomLeft()).y() <= lines.height();
               }) != nullptr;
    }

    static QQuickItem* find(const QQuickItem& item, const std::function<bool(const QQuickItem&)>& wanted) {
        for (QQuickItem* child : item.childItems()) {
            if (wanted(*child)) {
                return child;
            }
            if (QQuickItem* found = find(*child, wanted)) {
                return found;
            }
        }
        return nullptr;
    }

    ContentView view_;
    int frames_ = 0;
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

} // namespace

bool passesWithWindow(const std::string& display) {
    std::string home = (std::filesystem::temp_directory_path() / "zentrill-log-XXXXXX").string();
    if (::mkdtemp(home.data()) == nullptr) {
        std::perror("bench_log: mkdtemp");
        std::exit(2);
    }
    qputenv("DISPLAY", display.c_str());
    qputenv("HOME", home.c_str());
    qputenv("XDG_RUNTIME_DIR", home.c_str());
    qputenv("QT_QPA_PLATFORM", "xcb");
    qputenv("QT_QPA_PLATFORMTHEME", "generic");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    qputenv("QML_DISK_CACHE_PATH", "/dev/null");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    std::string name = "bench_log";
    std::array<char*, 2> arguments{name.data(), nullptr};
    int count = 1;
    bool passed = false;
    {
        const QGuiApplication application(count, arguments.data());
        QGuiApplication::setQuitOnLastWindowClosed(false);
        const bool bursting = burst();
        passed = stream() && bursting;
    }
    std::filesystem::remove_all(home);
    return passed;
}

} // namespace zentrill::bench
