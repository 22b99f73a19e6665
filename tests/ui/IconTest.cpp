#include "ui/items/Icon.h"

#include "ui/items/IconDrawing.h"

#include <QQuickWindow>
#include <gtest/gtest.h>

namespace zentrill {
namespace {

constexpr QColor canvas(23, 23, 21);
constexpr QColor copper(216, 172, 119);

class IconTest : public ::testing::Test {
protected:
    IconTest() {
        window_.resize(100, 100);
        window_.setColor(canvas);
        icon_.setParentItem(window_.contentItem());
        icon_.setPosition({40, 40});
        icon_.setTint(copper);
        window_.show();
    }

    /// The pixel in the middle of the icon's square of 20.
    [[nodiscard]] QColor middle() {
        const QImage picture = window_.grabWindow();
        const qreal ratio = picture.devicePixelRatio();
        return picture.pixelColor(qRound(50 * ratio), qRound(50 * ratio));
    }

    QQuickWindow window_;
    Icon icon_;
};

TEST_F(IconTest, ShowsTheNamedGlyphInItsTint) {
    icon_.setSquareSize(20);
    EXPECT_EQ(icon_.size(), 20);
    EXPECT_EQ(icon_.width(), 20);
    EXPECT_EQ(icon_.height(), 20);
    EXPECT_EQ(middle(), canvas);
    icon_.setName(QStringLiteral("stop.fill"));
    EXPECT_EQ(middle(), copper);
    icon_.setTint(Qt::red);
    EXPECT_EQ(middle(), QColor(Qt::red));
    icon_.setTint(copper);
    EXPECT_EQ(middle(), copper);
}

TEST_F(IconTest, ShowsNothingForAnEmptyOrUnknownName) {
    icon_.setSquareSize(20);
    icon_.setName(QStringLiteral("stop.fill"));
    EXPECT_EQ(middle(), copper);
    icon_.setName(QStringLiteral("no.such.icon"));
    EXPECT_EQ(middle(), canvas);
    icon_.setName(QStringLiteral("stop.fill"));
    EXPECT_EQ(middle(), copper);
    icon_.setName(QString());
    EXPECT_EQ(middle(), canvas);
}

TEST_F(IconTest, IsDrawnAtThePixelsOfTheScreen) {
    icon_.setSquareSize(20);
    icon_.setName(QStringLiteral("app.badge.fill"));
    const QImage picture = window_.grabWindow();
    const int pixels = qRound(20 * picture.devicePixelRatio());
    const QPoint corner(qRound(40 * picture.devicePixelRatio()), qRound(40 * picture.devicePixelRatio()));
    const QImage glyph = drawIcon(QStringLiteral("app.badge.fill"), copper, {pixels, pixels});
    for (int y = 0; y < pixels; ++y) {
        for (int x = 0; x < pixels; ++x) {
            const QColor shown = picture.pixelColor(corner + QPoint(x, y));
            if (glyph.pixelColor(x, y).alpha() == 255) {
                EXPECT_EQ(shown, copper) << x << ' ' << y;
            } else if (glyph.pixelColor(x, y).alpha() == 0) {
                EXPECT_EQ(shown, canvas) << x << ' ' << y;
            }
        }
    }
}

} // namespace
} // namespace zentrill
