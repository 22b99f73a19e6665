#pragma once

#include <algorithm>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace zentrill::bench {

/// What one run of a program cost, in seconds.
struct Cost {
    double wall = 0;
    double cpu = 0;
};

/// Runs a program to its end; its output goes to `outputPath`. A program that fails ends the benchmark.
[[nodiscard]] Cost runProgram(const std::vector<std::string>& arguments,
                              const std::string& outputPath = "/dev/null");

/// Two ways to do the same thing; `theirs` sets the measure.
struct Comparison {
    std::string name;
    std::string peer;
    double target = 1.0;
    int pairs = 7;
    /// Makes what the next run works on.
    std::function<void()> prepareOurs;
    std::function<void()> prepareTheirs;
    std::function<Cost()> ours;
    std::function<Cost()> theirs;
};

/// Runs both in turn, the first one changing from pair to pair, and prints the medians as one line of JSON.
void compare(const Comparison& comparison);

} // namespace zentrill::bench
