#include "ui/items/BusyWheel.h"

#include "support/EventLoop.h"

#include <QQuickWindow>
#include <gtest/gtest.h>

namespace zentrill {
namespace {

class BusyWheelTest : public ::testing::Test {
protected:
    BusyWheelTest() {
        window_.resize(40, 40);
        window_.setColor(Qt::black);
        wheel_.setParentItem(window_.contentItem());
        wheel_.setSize({14, 14});
        wheel_.setTint(Qt::white);
        window_.show();
    }

    [[nodiscard]] bool turnsWithin(std::chrono::milliseconds limit) {
        const QImage before = window_.grabWindow();
        return test::waitUntil([&] { return window_.grabWindow() != before; }, limit);
    }

    QQuickWindow window_;
    BusyWheel wheel_;
};

TEST_F(BusyWheelTest, DrawsFadingSpokesInItsTint) {
    wheel_.setRunning(false);
    const QImage picture = window_.grabWindow().copy(0, 0, 14, 14);
    int inked = 0;
    int bright = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            inked += picture.pixelColor(x, y).red() > 0 ? 1 : 0;
            bright += picture.pixelColor(x, y).red() > 200 ? 1 : 0;
        }
    }
    EXPECT_GT(inked, 40);
    EXPECT_GT(bright, 2);
    EXPECT_LT(bright, inked / 2);
}

TEST_F(BusyWheelTest, TurnsOnlyWhileItRuns) {
    EXPECT_TRUE(turnsWithin(std::chrono::seconds(5)));
    wheel_.setRunning(false);
    EXPECT_FALSE(turnsWithin(std::chrono::milliseconds(350)));
    wheel_.setRunning(true);
    EXPECT_TRUE(turnsWithin(std::chrono::seconds(5)));
}

} // namespace
} // namespace zentrill
