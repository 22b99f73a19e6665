#include "ui/items/IconDrawing.h"

#include "UiFixture.h"
#include "catalog/ApplicationList.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <gtest/gtest.h>

namespace zentrill {
namespace {

constexpr QColor tint(216, 172, 119);

/// Whether the glyph is there and every pixel of it has the tint's colour.
::testing::AssertionResult isDrawn(const QString& identifier) {
    const QImage image = drawIcon(identifier, tint, {32, 32});
    if (image.isNull()) {
        return ::testing::AssertionFailure() << identifier.toStdString() << " does not exist";
    }
    int inked = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            // Faint pixels of the edges lose precision when they are multiplied out.
            if (pixel.alpha() < 200) {
                continue;
            }
            ++inked;
            if (std::abs(pixel.red() - tint.red()) > 3 || std::abs(pixel.green() - tint.green()) > 3 ||
                std::abs(pixel.blue() - tint.blue()) > 3) {
                return ::testing::AssertionFailure()
                       << identifier.toStdString() << " is not tinted: " << pixel.name().toStdString();
            }
        }
    }
    if (inked < 20) {
        return ::testing::AssertionFailure() << identifier.toStdString() << " is empty";
    }
    return ::testing::AssertionSuccess();
}

/// The identifiers that stand in the views.
QSet<QString> identifiersInViews() {
    QSet<QString> identifiers;
    static const QRegularExpression property(QStringLiteral(R"(\b(?:name|icon|iconName):([^\n]*))"));
    static const QRegularExpression literal(QStringLiteral(R"re("([a-z0-9.]+)")re"));
    QDirIterator files(QStringLiteral(":/qt/qml/Zentrill"), {QStringLiteral("*.qml")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (!file.open(QIODevice::ReadOnly)) {
            continue;
        }
        auto values = property.globalMatch(QString::fromUtf8(file.readAll()));
        while (values.hasNext()) {
            auto literals = literal.globalMatch(values.next().captured(1));
            while (literals.hasNext()) {
                identifiers.insert(literals.next().captured(1));
            }
        }
    }
    return identifiers;
}

TEST(IconDrawingTest, DrawsTheIconOfEveryApplication) {
    for (const AppInfo& application : applicationList()) {
        EXPECT_TRUE(isDrawn(QString::fromStdString(application.iconName))) << application.name;
    }
}

TEST(IconDrawingTest, DrawsEveryIconOfTheViews) {
    const QSet<QString> identifiers = identifiersInViews();
    // All four panes, the two buttons of every list and the sidebar's last entry are among them.
    for (const char* known :
         {"app.badge.fill", "cube.box.fill", "shippingbox.fill", "terminal.fill", "trash.slash.fill",
          "trash.fill", "stop.fill", "arrow.clockwise", "shippingbox"}) {
        EXPECT_TRUE(identifiers.contains(QString::fromLatin1(known))) << known;
    }
    for (const QString& identifier : identifiers) {
        EXPECT_TRUE(isDrawn(identifier));
    }
}

TEST(IconDrawingTest, DrawsEveryIconThatIsChosenAtRunTime) {
    for (const char* identifier : {"checkmark.square.fill", "square", "minus.square", "checkmark.circle.fill",
                                   "exclamationmark.circle", "xmark.circle", "questionmark.circle",
                                   "shippingbox.and.arrow.backward", "exclamationmark.triangle"}) {
        EXPECT_TRUE(isDrawn(QString::fromLatin1(identifier)));
    }
}

TEST(IconDrawingTest, DrawsAtTheSizeAndInTheColourOfTheRequest) {
    const QImage image = drawIcon(QStringLiteral("stop.fill"), QColor(255, 0, 0, 128), {40, 30});
    EXPECT_EQ(image.size(), QSize(40, 30));
    EXPECT_EQ(image.pixelColor(20, 15), QColor(255, 0, 0, 128));
}

TEST(IconDrawingTest, HasNoIconForAnUnknownIdentifier) {
    EXPECT_TRUE(drawIcon(QStringLiteral("no.such.icon"), tint, {32, 32}).isNull());
    EXPECT_TRUE(drawIcon(QStringLiteral("../icons/trash"), tint, {0, 0}).isNull());
}

} // namespace
} // namespace zentrill
