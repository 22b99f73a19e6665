// Planning the deletion of a tree against `du`, which looks at the same entries.
//
//     bench_plan [folder in memory [folder on disk]]
//
// The folders are its own, in /dev/shm and $TMPDIR. Others must be given to it: zentrill-confine --write
// FOLDER ...

#include "BenchRun.h"
#include "BenchTree.h"
#include "deletion/SafeDeletionEngine.h"

#include <cstdlib>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

using namespace zentrill;

int planOnce(const std::string& how, const std::string& path) {
    const DeletionConcurrency concurrency =
        how == "alone" ? DeletionConcurrency{} : DeletionConcurrency::ofThisMachine();
    const SafeDeletionEngine engine(FileSystem::shared(), {}, {}, concurrency);
    const DeletionPlan plan = engine.plan(path, {.preserveCredentials = how == "shield"});
    return plan.itemGoes ? 0 : 1;
}

void againstDu(const std::string& name, const std::string& how, const std::string& tree) {
    bench::compare({.name = name,
                    .peer = "du -s --apparent-size",
                    .target = 0.7,
                    .pairs = 15,
                    .prepareOurs = [] {},
                    .prepareTheirs = [] {},
                    .ours = [=] { return bench::runProgram({"/proc/self/exe", "--plan", how, tree}); },
                    .theirs = [=] { return bench::runProgram({"du", "-s", "--apparent-size", tree}); }});
}

void threadsAgainstOne(const std::string& name, const std::string& tree) {
    bench::compare(
        {.name = name,
         .peer = "ours on one thread",
         .target = 1.0,
         .pairs = 9,
         .prepareOurs = [] {},
         .prepareTheirs = [] {},
         .ours = [=] { return bench::runProgram({"/proc/self/exe", "--plan", "whole", tree}); },
         .theirs = [=] { return bench::runProgram({"/proc/self/exe", "--plan", "alone", tree}); }});
}

void clear(const std::string& tree) {
    (void)SafeDeletionEngine().deleteItem(tree, {});
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv, argv + argc);
    if (argc == 4 && arguments[1] == "--plan") {
        return planOnce(arguments[2], arguments[3]);
    }
    const std::string memory = bench::makeFolder(argc > 1 ? arguments[1] : std::getenv("ZENTRILL_MEMORY"));
    const std::string disk = bench::makeFolder(argc > 2 ? arguments[2] : std::getenv("TMPDIR"));
    const std::string tree = memory + "/tree";
    bench::makeTree(tree, 400, 500);
    againstDu("plan.tree-200k-memory", "whole", tree);
    againstDu("plan.tree-200k-memory-shield", "shield", tree);
    threadsAgainstOne("plan.threads-memory", tree);
    clear(tree);
    bench::makeTree(tree, 25000, 7);
    againstDu("plan.small-folders-200k-memory", "whole", tree);
    clear(tree);
    const std::string diskTree = disk + "/tree";
    bench::makeTree(diskTree, 400, 500);
    againstDu("plan.tree-200k-disk", "whole", diskTree);
    clear(diskTree);
    ::rmdir(memory.c_str());
    ::rmdir(disk.c_str());
    return 0;
}
