// Scans a machine with a real Docker Engine of its own, 20 containers, 30 images and a home of 200 hub
// folders, and lets a shell script run the very same docker commands, one after the other, and then size the
// folders with `du`. The first argument is the number of files in each hub folder, 100 without one.

#include "Comparison.h"
#include "catalog/ApplicationList.h"
#include "controller/SystemScan.h"
#include "process/ShellCommandRunner.h"
#include "support/DockerEngine.h"
#include "support/FixedDockerLocator.h"
#include "support/MemoryFolder.h"
#include "support/TemporaryDirectory.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace zentrill;

constexpr std::size_t imageCount = 30;
constexpr std::size_t containerCount = 20;
constexpr std::size_t runningCount = 5;
constexpr std::size_t modelCount = 200;
constexpr int defaultBlobCount = 100;
constexpr int rounds = 21;

/// Runs commands for real and writes them down as lines of a shell script.
class RecordingRunner final : public CommandExecuting {
public:
    CommandResult run(const std::string& executable, const std::vector<std::string>& arguments,
                      Timeout timeout) override {
        std::string line = quoted(executable);
        for (const std::string& argument : arguments) {
            line += ' ' + quoted(argument);
        }
        {
            const std::lock_guard guard(mutex_);
            script_ += line + " > /dev/null 2>&1\n";
        }
        return runner_.run(executable, arguments, timeout);
    }

    [[nodiscard]] const std::string& script() const { return script_; }

private:
    static std::string quoted(const std::string& word) { return "'" + word + "'"; }

    ShellCommandRunner runner_;
    std::mutex mutex_;
    std::string script_;
};

/// A hub cache: blobs, and a link to each. In memory, which stands for a disk whose folders are in the cache.
void furnish(const test::TemporaryDirectory& home, int blobCount) {
    for (std::size_t model = 0; model < modelCount; ++model) {
        const std::string folder =
            ".cache/huggingface/hub/models--organisation--model-" + std::to_string(model);
        const std::string blobs = home.makeDirectory(folder + "/blobs") + '/';
        const std::string snapshot = home.makeDirectory(folder + "/snapshots/main") + '/';
        for (int blob = 0; blob < blobCount; ++blob) {
            const std::string name = std::to_string(blob);
            std::ofstream(blobs + name) << std::string(static_cast<std::size_t>(blob % 7), 'x');
            std::filesystem::create_symlink("../../blobs/" + name, snapshot + name);
        }
    }
}

/// Every image has a tag and is another; a quarter of the containers runs.
void furnish(test::DockerEngine& engine) {
    for (std::size_t image = 0; image < imageCount; ++image) {
        engine.makeImage("sample/image-" + std::to_string(image) + ":1");
    }
    for (std::size_t container = 0; container < containerCount; ++container) {
        const std::string name = "container-" + std::to_string(container);
        const std::string image = "sample/image-" + std::to_string(container) + ":1";
        if (container < runningCount) {
            engine.docker({"run", "--detach", "--network", "none", "--name", name, image, "/bin/busybox",
                           "sleep", "100000"});
        } else {
            engine.docker({"create", "--name", name, image, "/bin/busybox", "true"});
        }
    }
}

/// Makes the engine the one that every `docker` without further words talks to.
void makeCurrent(const test::DockerEngine& engine, const std::string& docker, const std::string& folder) {
    ::setenv("DOCKER_CONFIG", folder.c_str(), 1);
    ::unsetenv("DOCKER_HOST");
    ::unsetenv("DOCKER_CONTEXT");
    ShellCommandRunner runner;
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"context", "create", "sample", "--docker", "host=" + engine.host()},
          std::vector<std::string>{"context", "use", "sample"}}) {
        if (const CommandResult result = runner.run(docker, arguments); !result.succeeded()) {
            throw std::runtime_error(result.diagnostic());
        }
    }
}

void scan(const std::shared_ptr<CommandExecuting>& commands, const std::string& docker) {
    OperationContext context;
    context.commandRunner = commands;
    context.dockerLocator = std::make_shared<test::FixedDockerLocator>(docker);
    context.apps = applicationList();
    context.log = [](const std::string&) {};
    context.isCancelled = [] { return false; };
    context.isAbandoned = [] { return false; };
    const ScanSnapshot snapshot = collectScan(context);
    const auto* const inventory = std::get_if<DockerAvailability::Available>(&snapshot.docker.state);
    if (inventory == nullptr || inventory->containers.size() != containerCount ||
        inventory->images.size() != imageCount || inventory->imageWarning ||
        snapshot.models.size() != modelCount) {
        throw std::runtime_error("the scan missed something");
    }
}

void runScript(const std::string& path) {
    std::string shell = "/bin/sh";
    std::string argument = path;
    char* const arguments[] = {shell.data(), argument.data(), nullptr};
    pid_t pid = -1;
    int status = 0;
    if (::posix_spawn(&pid, shell.c_str(), nullptr, nullptr, arguments, environ) != 0 ||
        ::waitpid(pid, &status, 0) != pid || status != 0) {
        throw std::runtime_error("the script failed");
    }
}

bool measure(int blobCount) {
    const test::TemporaryDirectory home(test::memoryFolder());
    ::setenv("HOME", home.path().c_str(), 1);
    furnish(home, blobCount);
    test::DockerEngine engine;
    furnish(engine);
    const std::string docker = test::DockerEngine::clients().back();
    makeCurrent(engine, docker, home.makeDirectory("docker"));

    // Both once, so that the caches are warm.
    const auto recorded = std::make_shared<RecordingRunner>();
    scan(recorded, docker);
    const std::string script =
        home.makeFile("script", "set -e\n" + recorded->script() + "du -sb " +
                                    home.path(".cache/huggingface/hub") + "/* > /dev/null\n");
    runScript(script);

    const auto commands = std::make_shared<ShellCommandRunner>();
    std::vector<double> ours;
    std::vector<double> theirs;
    const auto measureOurs = [&] { ours.push_back(bench::secondsOf([&] { scan(commands, docker); })); };
    const auto measureTheirs = [&] { theirs.push_back(bench::secondsOf([&] { runScript(script); })); };
    for (int round = 0; round < rounds; ++round) {
        if (round % 2 == 0) {
            measureOurs();
            measureTheirs();
        } else {
            measureTheirs();
            measureOurs();
        }
    }
    return bench::Comparison{.bench = "scan/20 containers, 30 images, 200 hub folders of " +
                                      std::to_string(blobCount) + " files",
                             .peer = "the same docker commands in a shell script, then du",
                             .ours = bench::median(ours),
                             .theirs = bench::median(theirs),
                             .target = 0.8}
        .report();
}

} // namespace

int main(int argc, char* argv[]) {
    if (const auto obstacle = test::DockerEngine::obstacle()) {
        std::fprintf(stderr, "bench_scan is left out: it %s\n", obstacle->c_str());
        return EXIT_SUCCESS;
    }
    try {
        return measure(argc > 1 ? std::stoi(argv[1]) : defaultBlobCount) ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_scan: %s\n", error.what());
        return 2;
    }
}
