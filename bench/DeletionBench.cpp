// Deleting whole trees against `rm -rf`, and what the shield costs.
//
//     bench_deletion [folder in memory [folder on disk]]
//
// The folders are its own, in /dev/shm and $TMPDIR. Others must be given to it: zentrill-confine --write
// FOLDER ...

#include "BenchRun.h"
#include "BenchTree.h"
#include "deletion/SafeDeletionEngine.h"

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

#include <unistd.h>

namespace {

using namespace zentrill;
using bench::makeTree;

/// Follows a deletion in the way of the window, on a thread of its own.
class Onlooker {
public:
    explicit Onlooker(std::shared_ptr<DeletionProgress> progress)
        : thread_([this, progress = std::move(progress)] {
              std::unique_lock lock(mutex_);
              while (!ended_.wait_for(lock, std::chrono::milliseconds(250), [this] { return end_; })) {
                  (void)progress->removedCount();
                  (void)progress->path();
              }
          }) {}

    ~Onlooker() {
        {
            const std::lock_guard lock(mutex_);
            end_ = true;
        }
        ended_.notify_one();
        thread_.join();
    }

    Onlooker(const Onlooker&) = delete;
    Onlooker(Onlooker&&) = delete;
    Onlooker& operator=(const Onlooker&) = delete;
    Onlooker& operator=(Onlooker&&) = delete;

private:
    std::mutex mutex_;
    std::condition_variable ended_;
    bool end_ = false;
    std::thread thread_;
};

/// What the program does when it runs itself, so that both sides of a comparison are processes.
int deleteOnce(std::string_view how, const std::string& path) {
    const DeletionOptions options{.preserveCredentials = how == "shield" || how == "keep",
                                  .preserveUnrecognized = how == "keep"};
    const DeletionConcurrency concurrency =
        how == "alone" ? DeletionConcurrency{} : DeletionConcurrency::ofThisMachine();
    SafeDeletionEngine engine(FileSystem::shared(), {}, {}, concurrency,
                              how == "unheld" ? DeletionDomain{} : DeletionDomain::ofThisMachine());
    std::optional<Onlooker> onlooker;
    if (how == "counted") {
        const auto progress = std::make_shared<DeletionProgress>();
        engine = engine.tellingTo(progress);
        onlooker.emplace(progress);
    }
    const DeletionReport report = engine.deleteItem(path, options);
    return report.succeeded() && (how == "keep") == report.removed.empty() ? 0 : 1;
}

class Bench {
public:
    explicit Bench(std::string self) : self_(std::move(self)) {}

    void againstRm(const std::string& name, const std::string& base, double target, int folders,
                   int filesPerFolder, int pairs) const {
        bench::compare({.name = name,
                        .peer = "rm -rf",
                        .target = target,
                        .pairs = pairs,
                        .prepareOurs = [=] { makeTree(base + "/ours", folders, filesPerFolder); },
                        .prepareTheirs = [=] { makeTree(base + "/theirs", folders, filesPerFolder); },
                        .ours = [=, this] { return ourselves("whole", base + "/ours"); },
                        .theirs = [=] { return bench::runProgram({"rm", "-rf", base + "/theirs"}); }});
    }

    void shieldAgainstNone(const std::string& base) const {
        bench::compare({.name = "deletion.shield-nothing-kept",
                        .peer = "ours without the shield",
                        .target = 1.15,
                        .pairs = 9,
                        .prepareOurs = [=] { makeTree(base + "/ours", 400, 500); },
                        .prepareTheirs = [=] { makeTree(base + "/theirs", 400, 500); },
                        .ours = [=, this] { return ourselves("shield", base + "/ours"); },
                        .theirs = [=, this] { return ourselves("whole", base + "/theirs"); }});
    }

    /// What it costs that the kernel holds the deletion to its item.
    void heldAgainstUnheld(const std::string& name, const std::string& base, int pairs) const {
        bench::compare({.name = name,
                        .peer = "ours outside of the domain",
                        .target = 1.18,
                        .pairs = pairs,
                        .prepareOurs = [=] { makeTree(base + "/ours", 400, 500); },
                        .prepareTheirs = [=] { makeTree(base + "/theirs", 400, 500); },
                        .ours = [=, this] { return ourselves("whole", base + "/ours"); },
                        .theirs = [=, this] { return ourselves("unheld", base + "/theirs"); }});
    }

    /// What it costs that somebody can see how far it has come.
    void countedAgainstUncounted(const std::string& name, const std::string& base, int pairs) const {
        bench::compare({.name = name,
                        .peer = "ours without the counter",
                        .target = 1.02,
                        .pairs = pairs,
                        .prepareOurs = [=] { makeTree(base + "/ours", 400, 500); },
                        .prepareTheirs = [=] { makeTree(base + "/theirs", 400, 500); },
                        .ours = [=, this] { return ourselves("counted", base + "/ours"); },
                        .theirs = [=, this] { return ourselves("whole", base + "/theirs"); }});
    }

    /// Whether it pays to take the machine's other processors.
    void threadsAgainstOne(const std::string& name, const std::string& base, int pairs) const {
        bench::compare({.name = name,
                        .peer = "ours on one thread",
                        .target = 1.0,
                        .pairs = pairs,
                        .prepareOurs = [=] { makeTree(base + "/ours", 400, 500); },
                        .prepareTheirs = [=] { makeTree(base + "/theirs", 400, 500); },
                        .ours = [=, this] { return ourselves("whole", base + "/ours"); },
                        .theirs = [=, this] { return ourselves("alone", base + "/theirs"); }});
    }

    void keepingAgainstFind(const std::string& base) const {
        const std::string tree = base + "/kept";
        makeTree(tree, 100, 500);
        bench::compare(
            {.name = "deletion.shield-all-kept",
             .peer = "find -type f",
             .target = 1.2,
             .pairs = 21,
             .prepareOurs = [] {},
             .prepareTheirs = [] {},
             .ours = [=, this] { return ourselves("keep", tree); },
             .theirs = [=] { return bench::runProgram({"find", tree, "-type", "f"}, base + "/list"); }});
        (void)deleteOnce("whole", tree);
        ::unlink((base + "/list").c_str());
    }

private:
    [[nodiscard]] bench::Cost ourselves(const std::string& how, const std::string& path) const {
        return bench::runProgram({self_, "--delete", how, path});
    }

    std::string self_;
};

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv, argv + argc);
    if (argc == 4 && arguments[1] == "--delete") {
        return deleteOnce(arguments[2], arguments[3]);
    }
    const std::string memory = bench::makeFolder(argc > 1 ? arguments[1] : std::getenv("ZENTRILL_MEMORY"));
    const std::string disk = bench::makeFolder(argc > 2 ? arguments[2] : std::getenv("TMPDIR"));
    const Bench bench("/proc/self/exe");
    bench.againstRm("deletion.tree-200k-memory", memory, 0.65, 400, 500, 9);
    bench.againstRm("deletion.one-folder-400k-memory", memory, 1.05, 1, 400000, 5);
    bench.heldAgainstUnheld("deletion.domain-memory", memory, 9);
    bench.heldAgainstUnheld("deletion.domain-disk", disk, 3);
    bench.countedAgainstUncounted("deletion.counter-memory", memory, 21);
    bench.shieldAgainstNone(memory);
    bench.keepingAgainstFind(memory);
    bench.threadsAgainstOne("deletion.threads-memory", memory, 5);
    bench.threadsAgainstOne("deletion.threads-disk", disk, 3);
    bench.againstRm("deletion.tree-200k-disk", disk, 0.65, 400, 500, 5);
    bench.againstRm("deletion.one-folder-400k-disk", disk, 1.05, 1, 400000, 3);
    ::rmdir(memory.c_str());
    ::rmdir(disk.c_str());
    return 0;
}
