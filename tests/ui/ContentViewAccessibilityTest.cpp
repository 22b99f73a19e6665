#include "ContentViewFixture.h"
#include "UiFixture.h"

#include <QAccessible>
#include <QQuickItem>
#include <gtest/gtest.h>

#include <algorithm>

namespace zentrill {
namespace {

using ContentViewTest = test::ContentViewFixture;

TEST_F(ContentViewTest, NamesEveryControlAndRow) {
    for (const char* tab : {"apps", "models", "containers", "console"}) {
        state().setSelectedTab(QString::fromLatin1(tab));
        ASSERT_NE(find(state().title().toStdString()), nullptr);
        for (QQuickItem* item : buttons()) {
            QAccessibleInterface* const element = QAccessible::queryAccessibleInterface(item);
            // Without a name of its own a button goes by its label.
            const QString name = element != nullptr ? nameOf(*element) : item->property("text").toString();
            EXPECT_FALSE(name.isEmpty()) << item->metaObject()->className() << " in " << tab;
        }
        // The four tabs, the scan button, the self-uninstall and what the pane has.
        EXPECT_GE(buttons().size(), 7U) << tab;
        std::size_t controls = 0;
        for (const Node& node : accessibleTree()) {
            const bool isControl = node.role == QAccessible::Button || node.role == QAccessible::CheckBox ||
                                   node.role == QAccessible::ListItem || node.role == QAccessible::PageTab ||
                                   node.role == QAccessible::List || node.role == QAccessible::EditableText;
            if (!isControl) {
                continue;
            }
            ++controls;
            EXPECT_FALSE(node.name.empty()) << "a control of role " << node.role << " in " << tab;
        }
        // The four tabs and the list of the pane.
        EXPECT_GE(controls, 5U) << tab;
    }
}

TEST_F(ContentViewTest, SaysTheStateOfAnApplication) {
    QAccessibleInterface* const ollama = find("Ollama");
    ASSERT_NE(ollama, nullptr);
    EXPECT_TRUE(ollama->text(QAccessible::Description).endsWith(QLatin1String("Data remains. Not selected")));
    EXPECT_FALSE(ollama->state().checked);
    model_->setAppSelected("Ollama", true);
    EXPECT_TRUE(ollama->text(QAccessible::Description).endsWith(QLatin1String("Data remains. Selected")));
    EXPECT_TRUE(ollama->state().checked);
    EXPECT_NE(find("Safety Shield, retains recognized credentials and uncertain data when on"), nullptr);
}

TEST_F(ContentViewTest, LetsAnAssistiveToolPressTabsAndButtons) {
    QAccessibleInterface* const tab = find("Activity Console");
    ASSERT_NE(tab, nullptr);
    EXPECT_EQ(tab->role(), QAccessible::PageTab);
    EXPECT_FALSE(tab->state().selected);
    ASSERT_NE(tab->actionInterface(), nullptr);
    tab->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(state().selectedTab(), QStringLiteral("console"));
    EXPECT_TRUE(tab->state().selected);

    QAccessibleInterface* const uninstall = find("Uninstall Zentrill");
    ASSERT_NE(uninstall, nullptr);
    EXPECT_EQ(uninstall->role(), QAccessible::Button);
    EXPECT_TRUE(uninstall->state().focusable);
    ASSERT_NE(uninstall->actionInterface(), nullptr);
    EXPECT_TRUE(
        uninstall->actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction()));
    uninstall->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(state().confirmation()->isPending());
    // Below the modal that it opened it takes no further press, which would bring a new code.
    const QString code = state().confirmation()->confirmationCode();
    uninstall->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(state().confirmation()->confirmationCode(), code);
    state().confirmation()->dismissModal();
}

TEST_F(ContentViewTest, TellsWhatEveryButtonIsAndWhetherItCanBePressed) {
    const std::pair<const char*, QAccessible::Role> roles[] = {
        {"Local Models", QAccessible::PageTab},
        {"Ollama", QAccessible::CheckBox},
        {"Safety Shield, retains recognized credentials and uncertain data when on", QAccessible::CheckBox},
        {"Scan System", QAccessible::Button},
        {"Uninstall Zentrill", QAccessible::Button}};
    for (const auto& [name, role] : roles) {
        QAccessibleInterface* const element = find(name);
        ASSERT_NE(element, nullptr) << name;
        EXPECT_EQ(element->role(), role) << name;
        EXPECT_FALSE(element->state().disabled) << name;
    }
    EXPECT_TRUE(find("Local Models")->state().selectable);
    EXPECT_FALSE(find("Local Models")->state().selected);
    QAccessibleInterface* const uninstall = find("Uninstall Selected");
    ASSERT_NE(uninstall, nullptr);
    EXPECT_TRUE(uninstall->state().disabled);
    EXPECT_EQ(uninstall->actionInterface()->actionNames(), QStringList());
    model_->setAppSelected("Ollama", true);
    EXPECT_FALSE(uninstall->state().disabled);
}

TEST_F(ContentViewTest, AnAssistiveToolPressesEveryKindOfButton) {
    const auto press = [this](const std::string& name) {
        QAccessibleInterface* const element = find(name);
        ASSERT_NE(element, nullptr) << name;
        element->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    };
    press("Ollama");
    EXPECT_EQ(state().selectionCount(), QStringLiteral("1 selected"));
    press("Safety Shield, retains recognized credentials and uncertain data when on");
    EXPECT_FALSE(model_->preserveCredentials());
    press("Uninstall Selected");
    EXPECT_TRUE(state().modalShown());
    ASSERT_NE(find("Confirmation code"), nullptr);
    press("Cancel");
    EXPECT_FALSE(state().modalShown());
    press("Local Models");
    EXPECT_EQ(state().selectedTab(), QStringLiteral("models"));
    EXPECT_TRUE(find("Local Models")->state().selected);
}

TEST_F(ContentViewTest, ReadsRowsInTheirOrderAndDialogsAsModal) {
    for (int scans = 0; scans < 8; ++scans) {
        model_->scanSystem();
        ASSERT_TRUE(test::waitUntil([this] { return !model_->isBusy(); }));
    }
    state().setSelectedTab(QStringLiteral("console"));
    QAccessibleInterface* const log = find("Activity log");
    ASSERT_NE(log, nullptr);
    ASSERT_TRUE(test::waitUntil([&] { return log->childCount() > 10; }));
    press(Qt::Key_Home);
    press(Qt::Key_PageDown);
    std::vector<int> places;
    for (int index = 0; index < log->childCount(); ++index) {
        QAccessibleInterface* const line = log->child(index);
        ASSERT_NE(line, nullptr);
        EXPECT_EQ(log->indexOfChild(line), index);
        EXPECT_EQ(line->parent(), log);
        if (line->role() == QAccessible::ListItem) {
            places.push_back(line->rect().y());
        }
    }
    EXPECT_GT(places.size(), 10U);
    EXPECT_TRUE(std::ranges::is_sorted(places));
    EXPECT_EQ(log->child(-1), nullptr);
    EXPECT_EQ(log->child(log->childCount()), nullptr);

    EXPECT_FALSE(log->state().disabled);
    state().requestSelfUninstall();
    EXPECT_TRUE(log->state().disabled);
    QAccessibleInterface* const dialog = find("Self-Uninstall Zentrill?");
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(dialog->state().modal || dialog->role() == QAccessible::Heading);
    state().confirmation()->dismissModal();
    EXPECT_FALSE(log->state().disabled);
}

} // namespace
} // namespace zentrill
