// Report against disk on many random trees.
//
//     bench_truth [--long | <number of trees>] [<first seed>]

#include "truth/TruthTrial.h"

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv, argv + argc);
    std::uint64_t count = 100000;
    if (argc > 1) {
        count = arguments[1] == "--long" ? 1000000 : std::strtoull(argv[1], nullptr, 10);
    }
    const std::uint64_t first = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1;
    const auto begin = std::chrono::steady_clock::now();
    constexpr std::uint64_t step = 10000;
    for (std::uint64_t done = 0; done < count; done += step) {
        const std::uint64_t size = count - done < step ? count - done : step;
        if (const auto complaint = zentrill::test::runTruthTrials(first + done, size)) {
            std::printf("%s\n", complaint->c_str());
            return 1;
        }
    }
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    std::printf("%llu trees from seed %llu: report and disk agree, %.1f s\n",
                static_cast<unsigned long long>(count), static_cast<unsigned long long>(first), seconds);
    return 0;
}
