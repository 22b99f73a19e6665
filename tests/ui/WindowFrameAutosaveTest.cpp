#include "entry/WindowFrameAutosave.h"

#include "UiFixture.h"
#include "WindowFrameFixture.h"
#include "platform/PropertyList.h"
#include "support/Processes.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace zentrill {
namespace {

using test::frameKey;

using WindowFrameAutosaveTest = test::WindowFrameFixture;

const QRect screen(0, 0, 1440, 900);
constexpr QSize minimum(900, 650);

std::optional<QRect> frame(const char* text) {
    return WindowFrameAutosave::frame(QString::fromLatin1(text));
}

QRect broughtBack(const QRect& frame, const QList<QRect>& screens = {screen}) {
    return WindowFrameAutosave::broughtBack(frame, screens, minimum);
}

TEST(WindowFrameTextTest, WritesTheFrameAndTheScreen) {
    EXPECT_EQ(WindowFrameAutosave::text(QRect(10, -20, 950, 700), QRect(0, 25, 1440, 875)),
              QStringLiteral("10 -20 950 700 0 25 1440 875"));
}

TEST(WindowFrameTextTest, ReadsWhatItWrote) {
    for (const QRect& written : {QRect(10, -20, 950, 700), QRect(-1500, 0, 1, 1), QRect(0, 0, 4000, 3000)}) {
        EXPECT_EQ(WindowFrameAutosave::frame(WindowFrameAutosave::text(written, screen)), written);
    }
}

TEST(WindowFrameTextTest, ReadsFractionsAndSpareSpacesAndNeedsNoScreen) {
    EXPECT_EQ(frame(" 10.0  20.5 950 700 "), QRect(10, 20, 950, 700));
}

TEST(WindowFrameTextTest, ReadsNothingFromDamagedTexts) {
    for (const char* text :
         {"", " ", "10 20 950", "10 20 950 x 0 0 1440 900", "10 20 0 700", "10 20 950 -700", "nan 20 950 700",
          "10 inf 950 700", "1e300 20 950 700", "10 20 99999999999 700", "10 20 0.5 700",
          "{{10, 20}, {950, 700}}", "10\n20\n950\n700"}) {
        EXPECT_FALSE(frame(text)) << text;
    }
}

TEST(WindowFrameScreenTest, LeavesAFrameInSightAlone) {
    EXPECT_EQ(broughtBack({100, 50, 950, 700}), QRect(100, 50, 950, 700));
    // Partly beyond the right edge it can still be taken hold of.
    EXPECT_EQ(broughtBack({1200, 50, 950, 700}), QRect(1200, 50, 950, 700));
    EXPECT_EQ(broughtBack({1500, 100, 950, 700}, {screen, {1440, 0, 1440, 900}}), QRect(1500, 100, 950, 700));
}

TEST(WindowFrameScreenTest, CentresAFrameThatIsOutOfSight) {
    const QRect centred(245, 100, 950, 700);
    EXPECT_EQ(broughtBack({5000, 50, 950, 700}), centred);
    EXPECT_EQ(broughtBack({-5000, -5000, 950, 700}), centred);
    EXPECT_EQ(broughtBack({100, 890, 950, 700}), centred);
    EXPECT_EQ(broughtBack({100, -39, 950, 700}), centred);
    EXPECT_EQ(broughtBack({-900, 50, 950, 700}), centred);
    // In the gap between two screens of different heights.
    EXPECT_EQ(broughtBack({1500, 880, 950, 700}, {screen, {1440, 0, 1440, 600}}), centred);
}

TEST(WindowFrameScreenTest, KeepsTheSizeWithinTheScreenAndTheMinimum) {
    EXPECT_EQ(broughtBack({0, 0, 1440, 900}), QRect(0, 0, 1440, 900));
    EXPECT_EQ(broughtBack({0, 0, 4000, 3000}), QRect(0, 36, 1440, 864));
    EXPECT_EQ(broughtBack({700, 400, 1441, 700}), QRect(0, 200, 1440, 700));
    EXPECT_EQ(broughtBack({10, 10, 200, 100}), QRect(10, 10, 900, 650));
}

TEST(WindowFrameScreenTest, FitsAScreenBelowTheMinimum) {
    const QList<QRect> small{{0, 0, 853, 600}};
    const QRect whole(0, 36, 853, 564);
    EXPECT_EQ(broughtBack({5000, 5000, 950, 700}, small), whole);
    EXPECT_EQ(broughtBack({165, 100, 950, 700}, small), whole);
    EXPECT_EQ(broughtBack({10, 40, 500, 400}, small), whole);
    // Wide enough, but not high enough; and beside another screen.
    EXPECT_EQ(broughtBack({100, 50, 950, 700}, {{0, 0, 1280, 600}}), QRect(100, 36, 950, 564));
    EXPECT_EQ(broughtBack({1300, 150, 950, 700}, {{0, 0, 1280, 900}, {1280, 100, 800, 600}}),
              QRect(1280, 136, 800, 564));
}

TEST(WindowFrameScreenTest, LeavesAFrameAloneWithoutAnyScreen) {
    EXPECT_EQ(broughtBack({5000, 50, 950, 700}, {}), QRect(5000, 50, 950, 700));
}

TEST_F(WindowFrameAutosaveTest, RestoresASavedFrame) {
    ASSERT_TRUE(setPropertyListString(file_, frameKey, text({50, 60, 450, 350}).toStdString()));
    WindowFrameAutosave autosave(window_, file_);
    use(autosave);
    EXPECT_EQ(window_.geometry(), QRect(50, 60, 450, 350));
}

TEST_F(WindowFrameAutosaveTest, KeepsTheWindowWhereItIsWhenTheSavedTextIsDamaged) {
    ASSERT_TRUE(setPropertyListString(file_, frameKey, "10 20 damaged"));
    WindowFrameAutosave autosave(window_, file_);
    use(autosave);
    EXPECT_EQ(window_.geometry(), QRect(0, 0, 400, 300));
}

TEST_F(WindowFrameAutosaveTest, SavesAChangeOnceItHasComeToRest) {
    ASSERT_TRUE(setPropertyListString(file_, frameKey, text({50, 60, 450, 350}).toStdString()));
    ASSERT_TRUE(setPropertyListString(file_, "Other", "kept"));
    WindowFrameAutosave autosave(window_, file_);
    use(autosave);
    window_.setGeometry(70, 80, 500, 320);
    EXPECT_EQ(saved(), QRect(50, 60, 450, 350));
    EXPECT_TRUE(test::waitUntil([this] { return saved() == QRect(70, 80, 500, 320); }));
    EXPECT_EQ(propertyListString(file_, "Other"), "kept");
}

TEST_F(WindowFrameAutosaveTest, SavesTheVeryFirstChange) {
    WindowFrameAutosave autosave(window_, file_);
    use(autosave);
    ASSERT_TRUE(settle(autosave));
    EXPECT_FALSE(std::filesystem::exists(file_));
    window_.setGeometry(70, 80, 500, 320);
    EXPECT_TRUE(autosave.save());
    EXPECT_EQ(saved(), QRect(70, 80, 500, 320));
}

TEST_F(WindowFrameAutosaveTest, WritesNothingWhenNothingChanged) {
    WindowFrameAutosave autosave(window_, file_);
    use(autosave);
    EXPECT_TRUE(autosave.save());
    ASSERT_TRUE(settle(autosave));
    EXPECT_TRUE(autosave.save());
    EXPECT_FALSE(std::filesystem::exists(file_));
}

TEST_F(WindowFrameAutosaveTest, LeavesTheFileAloneWhenTheWindowIsBackWhereItWas) {
    ASSERT_TRUE(setPropertyListString(file_, frameKey, text({50, 60, 450, 350}).toStdString()));
    WindowFrameAutosave autosave(window_, file_);
    use(autosave);
    const auto written = std::filesystem::last_write_time(file_);
    const std::string content = test::contentOf(file_);
    window_.setGeometry(70, 80, 500, 320);
    window_.setGeometry(50, 60, 450, 350);
    EXPECT_TRUE(autosave.save());
    EXPECT_EQ(std::filesystem::last_write_time(file_), written);
    EXPECT_EQ(test::contentOf(file_), content);
}

TEST_F(WindowFrameAutosaveTest, WritesNothingAnyMoreOnceTheNameIsEmpty) {
    ASSERT_TRUE(setPropertyListString(file_, frameKey, text({50, 60, 450, 350}).toStdString()));
    WindowFrameAutosave autosave(window_, file_);
    use(autosave);
    window_.setGeometry(70, 80, 500, 320);
    autosave.setAutosaveName({});
    std::filesystem::remove(file_);
    window_.setGeometry(90, 80, 500, 320);
    EXPECT_TRUE(autosave.save());
    ASSERT_TRUE(settle(autosave));
    EXPECT_FALSE(std::filesystem::exists(file_));
    EXPECT_EQ(autosave.autosaveName(), QString());
}

TEST_F(WindowFrameAutosaveTest, ReadsAndWritesNothingWithoutAFile) {
    WindowFrameAutosave autosave(window_, {});
    use(autosave);
    ASSERT_TRUE(settle(autosave));
    window_.setGeometry(70, 80, 500, 320);
    EXPECT_TRUE(autosave.save());
}

TEST_F(WindowFrameAutosaveTest, ReplacesACorruptPropertyList) {
    folder_.makeFile("Preferences/com.user.Zentrill.plist", "<plist><dict><key>NSWindow Fr");
    WindowFrameAutosave autosave(window_, file_);
    use(autosave);
    EXPECT_EQ(window_.geometry(), QRect(0, 0, 400, 300));
    ASSERT_TRUE(settle(autosave));
    window_.setGeometry(70, 80, 500, 320);
    EXPECT_TRUE(autosave.save());
    EXPECT_EQ(saved(), QRect(70, 80, 500, 320));
}

TEST_F(WindowFrameAutosaveTest, SaysWhenTheFileCannotBeWritten) {
    // A folder stands where the file belongs.
    folder_.makeDirectory("Preferences/com.user.Zentrill.plist/inside");
    WindowFrameAutosave autosave(window_, file_);
    use(autosave);
    ASSERT_TRUE(settle(autosave));
    window_.setGeometry(70, 80, 500, 320);
    EXPECT_FALSE(autosave.save());
}

TEST_F(WindowFrameAutosaveTest, KeepsTheFrameFromBeforeTheWindowWasMaximised) {
    ASSERT_TRUE(setPropertyListString(file_, frameKey, text({50, 60, 450, 350}).toStdString()));
    WindowFrameAutosave autosave(window_, file_);
    use(autosave);
    window_.show();
    window_.setWindowStates(Qt::WindowMaximized);
    ASSERT_TRUE(test::waitUntil([this] { return window_.width() > 450; }));
    EXPECT_TRUE(autosave.save());
    EXPECT_EQ(saved(), QRect(50, 60, 450, 350));
}

} // namespace
} // namespace zentrill
