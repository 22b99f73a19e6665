#include "BenchWindow.h"

#include "Comparison.h"
#include "ui/ContentViewState.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QGuiApplication>
#include <QQuickWindow>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

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
    std::fprintf(stderr, "no %s in %s\n", name.c_str(), file);
    std::exit(2);
}

} // namespace

double peakProportionalMemory() {
    // What is shared does not change meanwhile.
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
            std::fprintf(stderr, "the window does not show what it should\n");
            std::exit(2);
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

QQuickItem* findItem(const QQuickItem& item, const std::function<bool(const QQuickItem&)>& wanted) {
    for (QQuickItem* child : item.childItems()) {
        if (wanted(*child)) {
            return child;
        }
        if (QQuickItem* found = findItem(*child, wanted)) {
            return found;
        }
    }
    return nullptr;
}

bool passesOnDisplay(const std::string& display, const std::function<bool(const std::string& home)>& trial) {
    std::string home = (std::filesystem::temp_directory_path() / "zentrill-window-XXXXXX").string();
    if (::mkdtemp(home.data()) == nullptr) {
        std::perror(home.c_str());
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
    std::string name = "bench";
    std::array<char*, 2> arguments{name.data(), nullptr};
    int count = 1;
    bool passed = false;
    {
        const QGuiApplication application(count, arguments.data());
        QGuiApplication::setQuitOnLastWindowClosed(false);
        passed = trial(home);
    }
    std::filesystem::remove_all(home);
    return passed;
}

BenchWindow::BenchWindow(std::unique_ptr<UninstallerViewModel> controller, const char* tab)
    : view_([&] { return std::move(controller); }) {
    view_.state().setSelectedTab(QString::fromLatin1(tab));
    view_.resize(950, 700);
    QObject::connect(&view_, &QQuickWindow::frameSwapped, &view_, [this] { ++frames_; });
    view_.show();
    runUntil([this] { return frames_ > 1; });
}

double BenchWindow::secondsToFrame(const std::function<void()>& change) {
    return secondsOf([&] {
        const int before = frames_;
        change();
        view_.requestUpdate();
        runUntil([&] { return frames_ > before; });
    });
}

} // namespace zentrill::bench
