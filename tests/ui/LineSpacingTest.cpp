#include "ui/items/LineSpacing.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <gtest/gtest.h>

#include <memory>

namespace zentrill {
namespace {

class LineSpacingTest : public ::testing::Test {
protected:
    LineSpacingTest() {
        engine_.addImportPath(QStringLiteral("qrc:/qt/qml"));
        QQmlComponent component(&engine_);
        component.setData("import QtQuick\n"
                          "import Zentrill\n"
                          "TextEdit {\n"
                          "    id: edit\n"
                          "    width: 200\n"
                          "    readOnly: true\n"
                          "    textFormat: TextEdit.PlainText\n"
                          "    wrapMode: TextEdit.Wrap\n"
                          "    property alias proportion: spacing.proportion\n"
                          "    LineSpacing { id: spacing; document: edit.textDocument }\n"
                          "}\n",
                          {});
        edit_.reset(qobject_cast<QQuickItem*>(component.create()));
        EXPECT_NE(edit_, nullptr) << component.errorString().toStdString();
    }

    /// The height of that text in proportion to the one that it has by itself.
    [[nodiscard]] qreal growth(const QString& text) {
        edit_->setProperty("text", QString());
        edit_->setProperty("proportion", 1.0);
        edit_->setProperty("text", text);
        const qreal plain = edit_->property("contentHeight").toReal();
        edit_->setProperty("proportion", 1.3);
        return edit_->property("contentHeight").toReal() / plain;
    }

    QQmlEngine engine_;
    std::unique_ptr<QQuickItem> edit_;
};

TEST_F(LineSpacingTest, SpacesTheLinesOfAText) {
    EXPECT_NEAR(growth(QStringLiteral("a text that is too long for one line ").repeated(5)), 1.3, 0.08);
}

TEST_F(LineSpacingTest, SpacesANewTextAsWell) {
    ASSERT_NEAR(growth(QStringLiteral("first ").repeated(30)), 1.3, 0.08);
    const auto lineHeight = [this] {
        return edit_->property("contentHeight").toReal() / edit_->property("lineCount").toReal();
    };
    const qreal spaced = lineHeight();
    edit_->setProperty("text", QStringLiteral("other ").repeated(30));
    EXPECT_NEAR(lineHeight(), spaced, 0.1);
    EXPECT_EQ(edit_->property("text").toString(), QStringLiteral("other ").repeated(30));
}

TEST_F(LineSpacingTest, GoesBackToTheFontsOwn) {
    ASSERT_NEAR(growth(QStringLiteral("first ").repeated(30)), 1.3, 0.08);
    const qreal spaced = edit_->property("contentHeight").toReal();
    edit_->setProperty("proportion", 1.0);
    EXPECT_NEAR(edit_->property("contentHeight").toReal() * 1.3, spaced, spaced * 0.08);
}

} // namespace
} // namespace zentrill
