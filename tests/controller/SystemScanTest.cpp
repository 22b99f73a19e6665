#include "controller/SystemScan.h"

#include "ControllerFixture.h"
#include "support/Processes.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <string>
#include <thread>
#include <utility>
#include <variant>
#include <vector>

#ifdef __linux__
#include <linux/filter.h>
#include <linux/seccomp.h>

#include <sys/prctl.h>
#include <sys/syscall.h>
#endif

namespace zentrill {
namespace {

using test::ControllerFixture;
using test::FakeCommandRunner;
using ::testing::ElementsAre;

class SystemScanTest : public ControllerFixture {
protected:
    SystemScanTest() {
        locator_->set("/opt/docker");
        home_.makeDirectory(".ollama");
        home_.makeFile(".ollama/models/manifests/registry.ollama.ai/library/llama3/latest", "{}");
        home_.makeFile(".cache/huggingface/hub/models--org--name/blob", "12345");
        home_.makeFile(".lmstudio/models/pub/foo.gguf", "123");
    }

    [[nodiscard]] OperationContext context() {
        OperationContext context;
        context.commandRunner = commands_;
        context.deletionEngine = engine_;
        context.dockerLocator = locator_;
        context.apps = {{.name = "Ollama", .displayName = "Ollama"},
                        {.name = "LM Studio", .displayName = "LM Studio"}};
        context.log = [this](std::string line) { lines_.push_back(std::move(line)); };
        context.isCancelled = [] { return false; };
        context.isAbandoned = [] { return false; };
        return context;
    }

    void expectEverythingFound(const ScanSnapshot& snapshot) const {
        EXPECT_EQ(snapshot.apps.size(), 2U);
        EXPECT_EQ(snapshot.models.size(), 3U);
        EXPECT_TRUE(std::holds_alternative<DockerAvailability::DaemonUnavailable>(snapshot.docker.state));
        EXPECT_THAT(
            lines_,
            ElementsAre(
                "Found remaining configuration/data for Ollama; no installation executable was detected.",
                "Found remaining configuration/data for LM Studio; no installation executable was detected.",
                "Scanning Ollama models...", "Scanning HuggingFace models...",
                "Scanning LM Studio models..."));
    }

    /// Written by the scanning thread alone.
    std::vector<std::string> lines_;
};

TEST_F(SystemScanTest, LooksAtTheDiskWhileDockerAnswers) {
    // Docker answers when the disk is done, and the disk goes on when Docker was asked: one after the other,
    // in either order, neither would ever come.
    std::atomic<bool> dockerWasAsked = false;
    std::atomic<bool> diskIsDone = false;
    std::atomic<int> met = 0;
    answer_ = [&](const FakeCommandRunner::Call&) {
        dockerWasAsked = true;
        met += test::eventually([&] { return diskIsDone.load(); }) ? 1 : 0;
        return test::failed(1, "no context\n");
    };
    OperationContext both = context();
    both.log = [&, log = both.log](const std::string& line) {
        met += test::eventually([&] { return dockerWasAsked.load(); }) ? 1 : 0;
        log(line);
        diskIsDone = line == "Scanning LM Studio models...";
    };
    expectEverythingFound(collectScan(both));
    EXPECT_EQ(met, 5 + 2) << "lines of the log, and the two ways to ask for the context";
}

TEST_F(SystemScanTest, StartsNoProgramBeforeTheFirstFrameWhileItLooksAtTheDisk) {
    std::atomic<bool> diskIsDone = false;
    std::atomic<bool> shown = false;
    std::atomic<int> tooEarly = 0;
    answer_ = [&](const FakeCommandRunner::Call&) {
        tooEarly += shown ? 0 : 1;
        return test::failed(1, "no context\n");
    };
    OperationContext starting = context();
    starting.awaitFirstFrame = [&] { shown = test::eventually([&] { return diskIsDone.load(); }); };
    starting.log = [&, log = starting.log](const std::string& line) {
        log(line);
        diskIsDone = line == "Scanning LM Studio models...";
    };
    expectEverythingFound(collectScan(starting));
    EXPECT_TRUE(shown);
    EXPECT_EQ(tooEarly, 0);
}

TEST_F(SystemScanTest, LogsOnItsOwnThreadAlone) {
    std::vector<std::thread::id> threads;
    OperationContext watched = context();
    watched.log = [&](const std::string&) { threads.push_back(std::this_thread::get_id()); };
    answer_ = [](const auto&) { return test::failed(1); };
    static_cast<void>(collectScan(watched));
    EXPECT_THAT(threads, ::testing::AllOf(::testing::SizeIs(5), ::testing::Each(std::this_thread::get_id())));
}

#ifdef __linux__
/// From here on this process can start nothing, not even a thread.
bool makeThreadsFail() {
    std::array<sock_filter, 6> instructions{
        sock_filter{BPF_LD | BPF_W | BPF_ABS, 0, 0, offsetof(seccomp_data, nr)},
        sock_filter{BPF_JMP | BPF_JEQ | BPF_K, 0, 1, SYS_clone3},
        sock_filter{BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ERRNO | ENOSYS},
        sock_filter{BPF_JMP | BPF_JEQ | BPF_K, 0, 1, SYS_clone},
        sock_filter{BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ERRNO | EAGAIN},
        sock_filter{BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ALLOW},
    };
    const sock_fprog program{.len = instructions.size(), .filter = instructions.data()};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

TEST_F(SystemScanTest, FindsTheSameWithoutASecondThread) {
    EXPECT_TRUE(test::holdsInForkedChild([this] {
        std::vector<std::thread::id> askers;
        answer_ = [&](const FakeCommandRunner::Call&) {
            askers.push_back(std::this_thread::get_id());
            return test::failed(1, "no context\n");
        };
        if (!makeThreadsFail()) {
            return false;
        }
        expectEverythingFound(collectScan(context()));
        return askers == std::vector(2, std::this_thread::get_id()) && !HasFailure();
    }));
}
#endif

} // namespace
} // namespace zentrill
