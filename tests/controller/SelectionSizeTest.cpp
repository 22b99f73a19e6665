#include "controller/sizes/SelectionSize.h"

#include "ControllerFixture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zentrill {
namespace {

class SelectionSizeTest : public test::ControllerFixture {
protected:
    SelectionSizeTest() { start(); }

    [[nodiscard]] SelectionSize size(const std::vector<AppInfo>& tools, SafetyShield shield,
                                     std::optional<std::chrono::milliseconds> patience = std::nullopt) const {
        return selectionSize(engine_, tools, shield, [] { return false; }, patience);
    }
};

TEST_F(SelectionSizeTest, FollowsTheShield) {
    home_.makeFile(".gemini/tmp/data", std::string(5000, 'x'));
    EXPECT_EQ(size({app("Gemini")}, SafetyShield::on), (SelectionSize{.goingBytes = 0}));
    EXPECT_EQ(size({app("Gemini")}, SafetyShield::off), (SelectionSize{.goingBytes = 5000}));
}

TEST_F(SelectionSizeTest, CountsOnceWhatTwoToolsShare) {
    home_.makeFile(".codex/history.jsonl", "1234");
    home_.makeFile(".gemini/tmp/data", "123");
    EXPECT_EQ(size({app("ChatGPT"), app("Codex Tooling"), app("Gemini")}, SafetyShield::off).goingBytes, 7);
}

TEST_F(SelectionSizeTest, SaysThatItWasOutOfPatience) {
    home_.makeFile(".gemini/tmp/data", std::string(5000, 'x'));
    EXPECT_FALSE(size({app("Gemini")}, SafetyShield::off, std::chrono::milliseconds(0)).isWhole);
    EXPECT_TRUE(size({app("Gemini")}, SafetyShield::off, std::chrono::hours(1)).isWhole);
}

TEST_F(SelectionSizeTest, StopsWhenItIsTold) {
    home_.makeFile(".gemini/tmp/data", std::string(5000, 'x'));
    EXPECT_FALSE(selectionSize(engine_, {app("Gemini")}, SafetyShield::off, [] { return true; }).isWhole);
}

} // namespace
} // namespace zentrill
