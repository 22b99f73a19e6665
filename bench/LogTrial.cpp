#include "LogTrial.h"

namespace zentrill::bench {

namespace {

class NoCommands final : public CommandExecuting {
public:
    CommandResult run(const std::string&, const std::vector<std::string>&, Timeout) override { return {}; }
};

class NoDocker final : public DockerExecutableLocating {
public:
    [[nodiscard]] std::optional<std::string> locate() const override { return std::nullopt; }
};

} // namespace

std::unique_ptr<UninstallerViewModel> makeQuietController() {
    ApplicationHooks hooks;
    hooks.endCommands = [] {};
    return std::make_unique<UninstallerViewModel>(std::make_shared<NoCommands>(),
                                                  std::make_shared<SafeDeletionEngine>(),
                                                  std::make_shared<NoDocker>(), false, hooks);
}

std::string logLine(int index) {
    return "Uninstalling: /Users/someone/Library/Caches/com.vendor.app/" + std::to_string(index);
}

void writeLog(UninstallerViewModel& controller) {
    for (int line = 0; line < logLineCount; ++line) {
        controller.log(logLine(line));
    }
}

bool reportLimit(const std::string& bench, double ours, double limit) {
    return Comparison{.bench = bench, .peer = "limit", .ours = ours, .theirs = limit}.report();
}

bool reportTurns(const std::string& bench, const Heartbeat& heartbeat) {
    const bool use =
        reportLimit(bench + ": longest turn, processor seconds", heartbeat.longestUse(), longestTurn);
    return reportLimit(bench + ": longest turn, seconds", heartbeat.longest(), longestTurn) && use;
}

} // namespace zentrill::bench
