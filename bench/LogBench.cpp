// A million lines written to the activity log by the worker, all the while and all at once, and cleared: how
// long the main thread is kept from anything else at a time, and what memory it takes.

#include "Comparison.h"
#include "controller/UninstallerViewModel.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <memory>
#include <string>
#include <thread>

#include <sys/resource.h>

namespace zentrill {
namespace {

constexpr int lineCount = 1'000'000;
constexpr double longestTurn = 0.050;
constexpr double mostMemory = 300e6;

class NoCommands final : public CommandExecuting {
public:
    CommandResult run(const std::string&, const std::vector<std::string>&, Timeout) override { return {}; }
};

class NoDocker final : public DockerExecutableLocating {
public:
    [[nodiscard]] std::optional<std::string> locate() const override { return std::nullopt; }
};

/// Ticks in every turn of the event loop and remembers the longest time between two ticks, by the clock on
/// the wall and by the processor time that the main thread itself used.
class Heartbeat {
public:
    Heartbeat() {
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { tick(); });
        timer_.start(0);
    }

    [[nodiscard]] double longest() const { return longest_; }

    [[nodiscard]] double longestUse() const { return longestUse_; }

private:
    static double read(clockid_t clock) {
        timespec now{};
        ::clock_gettime(clock, &now);
        return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
    }

    void tick() {
        longest_ = std::max(longest_, read(CLOCK_MONOTONIC) - last_);
        longestUse_ = std::max(longestUse_, read(CLOCK_THREAD_CPUTIME_ID) - lastUse_);
        last_ = read(CLOCK_MONOTONIC);
        lastUse_ = read(CLOCK_THREAD_CPUTIME_ID);
    }

    QTimer timer_;
    double last_ = read(CLOCK_MONOTONIC);
    double lastUse_ = read(CLOCK_THREAD_CPUTIME_ID);
    double longest_ = 0;
    double longestUse_ = 0;
};

double peakMemory() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
#if defined(__APPLE__)
    return static_cast<double>(usage.ru_maxrss);
#else
    return static_cast<double>(usage.ru_maxrss) * 1024;
#endif
}

/// Whether `ours` stays within `limit`, which stands in the peer's place.
bool report(const std::string& bench, double ours, double limit) {
    return bench::Comparison{.bench = bench, .peer = "limit", .ours = ours, .theirs = limit}.report();
}

bool report(const std::string& bench, const Heartbeat& heartbeat) {
    const bool use = report(bench + ": longest turn, processor seconds", heartbeat.longestUse(), longestTurn);
    return report(bench + ": longest turn, seconds", heartbeat.longest(), longestTurn) && use;
}

std::unique_ptr<UninstallerViewModel> makeController() {
    ApplicationHooks hooks;
    hooks.endCommands = [] {};
    return std::make_unique<UninstallerViewModel>(std::make_shared<NoCommands>(),
                                                  std::make_shared<SafeDeletionEngine>(),
                                                  std::make_shared<NoDocker>(), false, hooks);
}

void runUntilLogged(const UninstallerViewModel& controller, std::size_t lines) {
    while (controller.logs().size() < lines) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

void write(UninstallerViewModel& controller) {
    for (int line = 0; line < lineCount; ++line) {
        controller.log("[Safety Shield] Preserved: /Users/someone/Library/Caches/com.vendor.app/" +
                       std::to_string(line));
    }
}

/// All lines wait already when the main thread comes to them; then they are cleared.
bool burst() {
    const auto controller = makeController();
    std::thread worker([&controller] { write(*controller); });
    worker.join();
    bool pass = true;
    {
        const Heartbeat heartbeat;
        runUntilLogged(*controller, lineCount);
        pass = report("log: a burst of a million lines", heartbeat);
    }
    pass = report("log: peak memory with a million lines, bytes", peakMemory(), mostMemory) && pass;
    const Heartbeat heartbeat;
    controller->clearLogs();
    constexpr int turnsOfFreeing = 200;
    for (int turn = 0; turn < turnsOfFreeing; ++turn) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return report("log: clearing a million lines", heartbeat) && pass;
}

/// The lines come in while the main thread takes them.
bool stream() {
    const auto controller = makeController();
    const Heartbeat heartbeat;
    std::thread worker([&controller] { write(*controller); });
    runUntilLogged(*controller, lineCount);
    worker.join();
    return report("log: a stream of a million lines", heartbeat);
}

} // namespace
} // namespace zentrill

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const bool bursting = zentrill::burst();
    const bool streaming = zentrill::stream();
    return bursting && streaming ? 0 : 1;
}
