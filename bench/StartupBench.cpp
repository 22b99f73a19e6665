// Process start to the first frame on the screen, next to a bare Qt Quick window on the same renderer; and
// the memory of the program with its window shown and a scan of 2,000 model files done.
#include "Comparison.h"
#include "VirtualScreen.h"
#include "support/confinement/Confinement.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;
using zentrill::bench::Comparison;
using zentrill::bench::median;
using zentrill::bench::VirtualScreen;
namespace fs = std::filesystem;

constexpr int pairs = 15;
constexpr int modelFiles = 2000;
constexpr double memoryTargetMegabytes = 60;
/// A point inside of the window wherever a program puts it.
constexpr std::size_t lookX = 640;
constexpr std::size_t lookY = 450;

[[noreturn]] void fail(const std::string& what) {
    std::fprintf(stderr, "bench_startup: %s\n", what.c_str());
    std::exit(2);
}

/// A program that runs until the object ends.
class Running {
public:
    Running(const std::string& program, const std::string& display, const std::string& home) {
        std::vector<std::string> environment{"DISPLAY=" + display, "HOME=" + home,
                                             "PATH=/usr/bin:/bin", "QT_QPA_PLATFORM=xcb",
                                             "LANG=C.UTF-8",       "DBUS_SESSION_BUS_ADDRESS=disabled:",
                                             "XDG_RUNTIME_DIR=/"};
        std::vector<char*> pointers;
        for (std::string& entry : environment) {
            pointers.push_back(entry.data());
        }
        pointers.push_back(nullptr);
        std::string name = program;
        std::array<char*, 2> arguments{name.data(), nullptr};
        if (::posix_spawn(&process_, program.c_str(), nullptr, nullptr, arguments.data(), pointers.data()) !=
            0) {
            fail("cannot start " + program);
        }
    }

    ~Running() {
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
    }

    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    Running(Running&&) = delete;
    Running& operator=(Running&&) = delete;

    [[nodiscard]] std::string status(const char* file) const {
        std::ifstream stream("/proc/" + std::to_string(process_) + "/" + file);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

private:
    pid_t process_ = -1;
};

void waitFor(const VirtualScreen& screen, bool shown) {
    const auto end = std::chrono::steady_clock::now() + 30s;
    while ((screen.pixel(lookX, lookY) != 0) != shown) {
        if (std::chrono::steady_clock::now() > end) {
            fail(shown ? "no frame within half a minute" : "the window did not go");
        }
        std::this_thread::sleep_for(200us);
    }
}

double secondsToFirstFrame(const VirtualScreen& screen, const std::string& program, const std::string& home) {
    waitFor(screen, false);
    const auto begin = std::chrono::steady_clock::now();
    const Running running(program, screen.display(), home);
    waitFor(screen, true);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

/// The processor time that the program has used, as the kernel counts it.
std::string processorTime(const Running& running) {
    const std::string stat = running.status("stat");
    std::size_t place = stat.rfind(')');
    for (int field = 0; field < 12 && place != std::string::npos; ++field) {
        place = stat.find(' ', place + 1);
    }
    return place == std::string::npos
               ? std::string()
               : stat.substr(place, stat.find(' ', stat.find(' ', place + 1) + 1) - place);
}

/// Waits until the program has done nothing for a while: its scan is over and shown.
void waitForRest(const Running& running) {
    std::string last;
    for (int quiet = 0; quiet < 10;) {
        std::this_thread::sleep_for(100ms);
        const std::string now = processorTime(running);
        quiet = now == last ? quiet + 1 : 0;
        last = now;
    }
}

double proportionalMegabytes(const Running& running) {
    const std::string rollup = running.status("smaps_rollup");
    const std::size_t place = rollup.find("\nPss:");
    if (place == std::string::npos) {
        fail("no smaps_rollup");
    }
    return std::atof(rollup.c_str() + place + 5) / 1024;
}

void makeModels(const fs::path& home) {
    const fs::path folder = home / ".lmstudio/models/publisher/model";
    fs::create_directories(folder);
    for (int index = 0; index < modelFiles; ++index) {
        std::ofstream(folder / ("model-" + std::to_string(index) + ".gguf")) << "gguf";
    }
}

} // namespace

int main() {
    const std::string ours = ZENTRILL_PROGRAM;
    const std::string bare = ZENTRILL_BARE_WINDOW;
    const VirtualScreen screen;
    zentrill::confinement::confineOrEnd();
    std::string pattern = (fs::temp_directory_path() / "zentrill-startup-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) {
        fail("mkdtemp");
    }
    const fs::path home = pattern;
    makeModels(home);
    bool passed = true;
    {
        std::vector<double> oursSeconds;
        std::vector<double> theirsSeconds;
        for (int pair = 0; pair < pairs; ++pair) {
            oursSeconds.push_back(secondsToFirstFrame(screen, ours, home));
            theirsSeconds.push_back(secondsToFirstFrame(screen, bare, home));
        }
        passed = Comparison{"startup_first_frame", "bare Qt Quick window", median(oursSeconds),
                            median(theirsSeconds), 1.4}
                     .report();
        waitFor(screen, false);
        const Running running(ours, screen.display(), home);
        waitFor(screen, true);
        waitForRest(running);
        const double memory = proportionalMegabytes(running);
        const bool memoryPasses = memory <= memoryTargetMegabytes;
        std::printf(
            "{\"bench\":\"startup_memory_megabytes\",\"peer\":\"fixed bound\",\"ours\":%.1f,\"theirs\":%.1f,"
            "\"ratio\":%.3f,\"target\":1,\"pass\":%s}\n",
            memory, memoryTargetMegabytes, memory / memoryTargetMegabytes, memoryPasses ? "true" : "false");
        passed = passed && memoryPasses;
    }
    fs::remove_all(home);
    return passed ? 0 : 1;
}
