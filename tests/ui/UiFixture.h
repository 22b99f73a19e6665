#pragma once

#include "controller/ControllerFixture.h"

#include <QString>

#include <string>

namespace zentrill::test {

/// A controller over a home of its own, and ways to fill its lists with what a scan really finds.
class UiFixture : public ControllerFixture {
protected:
    UiFixture() { start(); }

    [[nodiscard]] bool scan() {
        controller_->scanSystem();
        return waitUntilIdle();
    }

    /// Answers like the `docker` tool with a running and a stopped container, an image in use and another.
    void playDocker() {
        locator_->set("/opt/docker");
        answer_ = [](const FakeCommandRunner::Call& call) {
            const std::string command = ::testing::PrintToString(call.arguments);
            if (command.find("show") != std::string::npos) {
                return ok("desktop\n");
            }
            if (command.find("image") != std::string::npos) {
                return ok(imageLine('a', "web", "1") + imageLine('b', "<none>", "<none>"));
            }
            if (command.find("inspect") != std::string::npos) {
                return ok(fullID('a') + "\n" + fullID('a') + "\n");
            }
            if (command.find("container") != std::string::npos) {
                return ok(R"({"ID":"c1","Names":"web","Image":"web:1","Status":"Up 3 minutes"})"
                          "\n"
                          R"({"ID":"c2","Names":"old","Image":"web:1","Status":"Exited (0) 2 hours ago"})"
                          "\n");
            }
            return ok("24.0\n");
        };
    }

    /// Ends with a result on the screen: stopping a container fails.
    [[nodiscard]] bool failAnOperation() {
        answer_ = [](const FakeCommandRunner::Call&) { return failed(1, "refused\nby the daemon\n"); };
        locator_->set("/opt/docker");
        controller_->stopContainer({.id = "c1", .name = "web", .image = "web:1", .status = "Up 3 minutes"});
        return waitUntilIdle() && controller_->showResultAlert();
    }

    [[nodiscard]] static std::string fullID(char digit) { return "sha256:" + std::string(64, digit); }

    [[nodiscard]] static std::string imageLine(char digit, const std::string& repository,
                                               const std::string& tag) {
        return R"({"ID":")" + fullID(digit) + R"(","Repository":")" + repository + R"(","Tag":")" + tag +
               R"(","Size":"10MB"})" + "\n";
    }
};

} // namespace zentrill::test
