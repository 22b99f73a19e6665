#include "BenchRun.h"

#include <cerrno>
#include <chrono>
#include <cstdlib>

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ; // NOLINT(readability-redundant-declaration): POSIX leaves it to the program

namespace zentrill::bench {

namespace {

double seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + (static_cast<double>(time.tv_usec) / 1e6);
}

double median(std::vector<double> values) {
    std::ranges::sort(values);
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

[[noreturn]] void giveUp(const std::string& what) {
    std::perror(what.c_str());
    std::exit(1);
}

} // namespace

Cost runProgram(const std::vector<std::string>& arguments, const std::string& outputPath) {
    std::vector<char*> argv;
    argv.reserve(arguments.size() + 1);
    for (const std::string& argument : arguments) {
        argv.push_back(const_cast<char*>(argument.c_str())); // NOLINT(cppcoreguidelines-pro-type-const-cast)
    }
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, outputPath.c_str(),
                                       O_WRONLY | O_CREAT | O_TRUNC, 0600);
    const auto begin = std::chrono::steady_clock::now();
    pid_t child = -1;
    if (::posix_spawnp(&child, argv[0], &actions, nullptr, argv.data(), environ) != 0) {
        giveUp(arguments[0]);
    }
    int status = 0;
    rusage usage{};
    while (::wait4(child, &status, 0, &usage) < 0 && errno == EINTR) {
    }
    const double wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    ::posix_spawn_file_actions_destroy(&actions);
    if (status != 0) {
        giveUp(arguments[0] + " failed");
    }
    return {wall, seconds(usage.ru_utime) + seconds(usage.ru_stime)};
}

void compare(const Comparison& comparison) {
    std::vector<double> ours;
    std::vector<double> theirs;
    std::vector<double> oursCpu;
    std::vector<double> theirsCpu;
    const auto measure = [](const std::function<Cost()>& run, std::vector<double>& wall,
                            std::vector<double>& cpu) {
        const Cost cost = run();
        wall.push_back(cost.wall);
        cpu.push_back(cost.cpu);
    };
    for (int pair = 0; pair < comparison.pairs; ++pair) {
        comparison.prepareOurs();
        comparison.prepareTheirs();
        if (pair % 2 == 0) {
            measure(comparison.ours, ours, oursCpu);
            measure(comparison.theirs, theirs, theirsCpu);
        } else {
            measure(comparison.theirs, theirs, theirsCpu);
            measure(comparison.ours, ours, oursCpu);
        }
    }
    const double ratio = median(ours) / median(theirs);
    std::printf(R"({"bench":"%s","peer":"%s","ours":%.6f,"theirs":%.6f,"ratio":%.3f,"target":%.2f,)"
                R"("ours_cpu":%.6f,"theirs_cpu":%.6f,"cpu_ratio":%.3f,"pairs":%d,"pass":%s})"
                "\n",
                comparison.name.c_str(), comparison.peer.c_str(), median(ours), median(theirs), ratio,
                comparison.target, median(oursCpu), median(theirsCpu), median(oursCpu) / median(theirsCpu),
                comparison.pairs, ratio <= comparison.target ? "true" : "false");
    std::fflush(stdout);
}

} // namespace zentrill::bench
