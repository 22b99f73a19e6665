// A million lines written to the activity log by the worker, all the while and all at once, cleared, and
// shown in the window: how long the main thread is kept from anything else at a time, and what memory it
// takes.

#include "Apart.h"
#include "LogTrial.h"
#include "VirtualScreen.h"
#include "support/confinement/Confinement.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <cstdio>
#include <cstdlib>
#include <thread>

#include <sys/resource.h>

namespace zentrill::bench {
namespace {

double peakMemory() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
#if defined(__APPLE__)
    return static_cast<double>(usage.ru_maxrss);
#else
    return static_cast<double>(usage.ru_maxrss) * 1024;
#endif
}

void runUntilLogged(const UninstallerViewModel& controller, std::size_t lines) {
    while (controller.logs().size() < lines) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

/// All lines wait already when the main thread comes to them; then they are cleared.
bool burst() {
    const auto controller = makeQuietController();
    std::thread worker([&controller] { writeLog(*controller); });
    worker.join();
    bool pass = true;
    {
        const Heartbeat heartbeat;
        runUntilLogged(*controller, logLineCount);
        pass = reportTurns("log: a burst of a million lines", heartbeat);
    }
    pass = reportLimit("log: peak memory with a million lines, bytes", peakMemory(), mostLogMemory) && pass;
    const Heartbeat heartbeat;
    controller->clearLogs();
    constexpr int turnsOfFreeing = 200;
    for (int turn = 0; turn < turnsOfFreeing; ++turn) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return reportTurns("log: clearing a million lines", heartbeat) && pass;
}

/// The lines come in while the main thread takes them.
bool stream() {
    const auto controller = makeQuietController();
    const Heartbeat heartbeat;
    std::thread worker([&controller] { writeLog(*controller); });
    runUntilLogged(*controller, logLineCount);
    worker.join();
    return reportTurns("log: a stream of a million lines", heartbeat);
}

/// The controller alone, without a display.
bool passesWithoutWindow(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const bool bursting = burst();
    return stream() && bursting;
}

} // namespace
} // namespace zentrill::bench

int main(int argc, char** argv) {
    using namespace zentrill::bench;
    const VirtualScreen screen;
    zentrill::confinement::confineOrEnd();
    const bool alone = passesApart([&] { return passesWithoutWindow(argc, argv); });
    const bool shown = passesWithWindow(screen.display());
    return alone && shown ? EXIT_SUCCESS : EXIT_FAILURE;
}
