// Sizes a hub cache of 200 models, each with 500 blobs and 500 links to them, and does the same with the
// tools that are known for it and with the kernel's calls alone, turn by turn and with a warm cache. Prints
// one line of JSON per peer; the ratio is the speed-up against a tool, theirs/ours, and ours/theirs against
// the bare calls.

#include "BareFolderSize.h"
#include "Comparison.h"
#include "models/LocalModelScanner.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

constexpr int modelCount = 200;
constexpr int blobCount = 500;
constexpr int rounds = 15;
constexpr double bareTarget = 1.10;
constexpr double duTarget = 3.0;
constexpr double gduTarget = 3.5;

[[noreturn]] void fail(const std::string& what) {
    std::fprintf(stderr, "bench_folder_size: %s\n", what.c_str());
    std::exit(1);
}

/// A home folder with the hub cache in it, removed at the end.
class HubHome {
public:
    HubHome() {
        std::string pattern = (fs::temp_directory_path() / "zentrill-bench-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr) {
            fail("cannot make a folder: " + std::generic_category().message(errno));
        }
        path_ = pattern;
        for (int model = 0; model < modelCount; ++model) {
            makeModel(hub() / ("models--organisation--model-" + std::to_string(model)), model);
        }
    }

    ~HubHome() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }

    HubHome(const HubHome&) = delete;
    HubHome& operator=(const HubHome&) = delete;
    HubHome(HubHome&&) = delete;
    HubHome& operator=(HubHome&&) = delete;

    [[nodiscard]] const fs::path& path() const { return path_; }

    [[nodiscard]] fs::path hub() const { return path_ / ".cache/huggingface/hub"; }

private:
    static void makeModel(const fs::path& folder, int model) {
        const fs::path snapshot = folder / "snapshots/5d853ed7d16ac794afa8f5c9c7f59f4e9c950954";
        fs::create_directories(folder / "blobs");
        fs::create_directories(folder / "refs");
        fs::create_directories(snapshot);
        std::ofstream(folder / "refs/main") << snapshot.filename().string();
        for (int blob = 0; blob < blobCount; ++blob) {
            // Blobs are named by 40 or 64 hexadecimal digits of a hash.
            std::string name(64, '0');
            std::snprintf(name.data(), name.size() + 1, "%032x%032x",
                          static_cast<unsigned>(model * blobCount + blob) * 2654435761U,
                          static_cast<unsigned>(blob));
            std::ofstream(folder / "blobs" / name) << std::string(static_cast<std::size_t>(blob % 7), 'x');
            fs::create_symlink("../../blobs/" + name, snapshot / ("file-" + std::to_string(blob) + ".json"));
        }
    }

    fs::path path_;
};

double timeOurs(const fs::path& home, std::int64_t& total) {
    const zentrill::LocalModelScanner scanner(home.string(), {});
    std::vector<zentrill::LocalModel> models;
    const double seconds = zentrill::bench::secondsOf([&] { models = scanner.scanHuggingFaceModels(); });
    if (models.size() != modelCount) {
        fail("the scan missed models");
    }
    total = 0;
    for (const zentrill::LocalModel& model : models) {
        total += model.sizeBytes;
    }
    return seconds;
}

double timeBare(const fs::path& hub, std::int64_t expectedTotal) {
    std::int64_t total = 0;
    const double seconds =
        zentrill::bench::secondsOf([&] { total = zentrill::bench::bareSizeOfFolders(hub.string()); });
    if (total != expectedTotal) {
        fail("the bare calls found " + std::to_string(total) + " bytes, not " +
             std::to_string(expectedTotal));
    }
    return seconds;
}

double timeCommand(std::vector<std::string> command) {
    std::vector<char*> arguments;
    std::transform(command.begin(), command.end(), std::back_inserter(arguments),
                   [](std::string& argument) { return argument.data(); });
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions{};
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    int status = 0;
    const double seconds = zentrill::bench::secondsOf([&] {
        pid_t child = 0;
        if (::posix_spawnp(&child, arguments.front(), &actions, nullptr, arguments.data(), ::environ) != 0) {
            fail("cannot start " + command.front());
        }
        while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
        }
    });
    ::posix_spawn_file_actions_destroy(&actions);
    if (status != 0) {
        fail(command.front() + " failed");
    }
    return seconds;
}

bool reportSpeedUp(const char* peer, double ours, double theirs, double target) {
    const double ratio = theirs / ours;
    const bool pass = ratio >= target;
    std::printf("{\"bench\":\"folder_size_speed_up\",\"peer\":\"%s\",\"ours\":%.4f,\"theirs\":%.4f,"
                "\"ratio\":%.2f,\"target\":%.1f,\"pass\":%s}\n",
                peer, ours, theirs, ratio, target, pass ? "true" : "false");
    return pass;
}

} // namespace

int main() {
    using zentrill::bench::median;
    const HubHome home;
    const std::string hub = home.hub().string();
    std::vector<double> ours;
    std::vector<double> bare;
    std::vector<double> du;
    std::vector<double> gdu;
    // The first round warms the cache and does not count.
    for (int round = 0; round <= rounds; ++round) {
        std::int64_t total = 0;
        const double ourTime = timeOurs(home.path(), total);
        const double bareTime = timeBare(home.hub(), total);
        const double duTime = timeCommand({"du", "-sb", hub});
        const double gduTime = timeCommand({"gdu", "-n", "-p", hub});
        if (round == 0) {
            continue;
        }
        ours.push_back(ourTime);
        bare.push_back(bareTime);
        du.push_back(duTime);
        gdu.push_back(gduTime);
    }
    const bool asFastAsTheKernel = zentrill::bench::Comparison{.bench = "folder_size",
                                                               .peer = "getdents64 and statx alone",
                                                               .ours = median(ours),
                                                               .theirs = median(bare),
                                                               .target = bareTarget}
                                       .report();
    const bool asFastAsDu = reportSpeedUp("du -sb", median(ours), median(du), duTarget);
    const bool asFastAsGdu = reportSpeedUp("gdu -n -p", median(ours), median(gdu), gduTarget);
    return asFastAsTheKernel && asFastAsDu && asFastAsGdu ? 0 : 1;
}
