#include "truth/TrialRun.h"

#include "support/MemoryFolder.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryDirectory.h"

#include <exception>
#include <fstream>
#include <sstream>

#include <sys/wait.h>
#include <unistd.h>

namespace zentrill::test {

namespace {

std::optional<std::string> runAll(std::uint64_t firstSeed, std::uint64_t count, const std::string& folder,
                                  const Trial& trial) {
    for (std::uint64_t seed = firstSeed; seed < firstSeed + count; ++seed) {
        if (std::optional<std::string> complaint = trial(seed, folder)) {
            return "seed " + std::to_string(seed) + ": " + *complaint;
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<std::string> runTrials(std::uint64_t firstSeed, std::uint64_t count, const Trial& trial) {
    const TemporaryDirectory folder(memoryFolder());
    if (::geteuid() != 0) {
        return runAll(firstSeed, count, folder.path(), trial);
    }
    giveToOrdinaryUser(folder.path());
    const std::string answer = folder.path("answer");
    const pid_t child = ::fork();
    if (child == 0) {
        try {
            becomeOrdinaryUser();
            const std::optional<std::string> complaint = runAll(firstSeed, count, folder.path(), trial);
            std::ofstream(answer) << complaint.value_or("");
            ::_exit(complaint ? 1 : 0);
        } catch (const std::exception& error) {
            std::ofstream(answer) << error.what();
            ::_exit(2);
        }
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    if (status == 0) {
        return std::nullopt;
    }
    std::ifstream file(answer);
    std::ostringstream text;
    text << "status " << status << ", " << file.rdbuf();
    return text.str();
}

} // namespace zentrill::test
