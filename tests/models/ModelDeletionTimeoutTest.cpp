#include "models/ModelDeletionService.h"
#include "support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>

namespace zentrill {
namespace {

// The one test that waits the service's own time-out out.
TEST(ModelDeletionTimeoutTest, AnOllamaThatHangsIsGivenUpAfterThirtySeconds) {
    const test::TemporaryHome home;
    const std::string manifest = home.makeFile("manifest", "{}");
    home.makeExecutable("bin/ollama", "#!/bin/sh\ntrap '' TERM\nwhile :; do sleep 1; done\n");
    const auto commands =
        std::make_shared<ShellCommandRunner>(Environment{{"PATH", home.path("bin") + ":/usr/bin:/bin"}});

    const auto begin = std::chrono::steady_clock::now();
    const ModelDeletionResult result =
        ModelDeletionService(commands).deleteModel("llama3:latest", "Ollama", manifest);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;

    EXPECT_EQ(result,
              (ModelDeletionResult{.message = "Ollama could not remove llama3:latest: Command timed out."}));
    EXPECT_TRUE(std::filesystem::exists(manifest));
    EXPECT_GE(taken.count(), 30.0);
    EXPECT_LT(taken.count(), 35.0);
}

} // namespace
} // namespace zentrill
