#include "ui/ContentView.h"

#include "UiFixture.h"
#include "ui/ContentViewState.h"
#include "ui/items/ManualCodeTextView.h"
#include "ui/items/Pressable.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QQuickItem>
#include <gtest/gtest.h>

#include <algorithm>

namespace zentrill {
namespace {

/// Collects the warnings of the views while it lives.
class Warnings {
public:
    Warnings() : previous_(qInstallMessageHandler(&Warnings::note)) { collected().clear(); }

    ~Warnings() { qInstallMessageHandler(previous_); }

    Warnings(const Warnings&) = delete;
    Warnings& operator=(const Warnings&) = delete;
    Warnings(Warnings&&) = delete;
    Warnings& operator=(Warnings&&) = delete;

    [[nodiscard]] static QStringList& collected() {
        static QStringList warnings;
        return warnings;
    }

private:
    static void note(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message) {
        if (type != QtDebugMsg && type != QtInfoMsg) {
            collected().append(message);
        }
    }

    QtMessageHandler previous_;
};

class ContentViewTest : public test::UiFixture {
protected:
    ContentViewTest() {
        playDocker();
        home_.makeDirectory(".ollama");
        home_.makeFile(".lmstudio/models/pub/foo.gguf", "123");
        scanned_ = scan();
        UninstallerViewModel* const controller = controller_.get();
        view_ = std::make_unique<ContentView>(std::move(controller_));
        model_ = controller;
        view_->resize(950, 700);
        view_->show();
        view_->requestActivate();
        active_ = test::waitUntil(
            [this] { return view_->state().windowShown() && view_->activeFocusItem() != nullptr; });
    }

    void SetUp() override {
        ASSERT_TRUE(scanned_);
        ASSERT_TRUE(active_);
    }

    void TearDown() override {
        view_.reset();
        EXPECT_EQ(Warnings::collected(), QStringList())
            << Warnings::collected().join(QLatin1Char('\n')).toStdString();
    }

    void press(int key, const QString& text = {}, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, modifiers, text);
            QCoreApplication::sendEvent(view_.get(), &event);
        }
    }

    [[nodiscard]] ContentViewState& state() const { return view_->state(); }

    struct Node {
        QAccessibleInterface* interface;
        QAccessible::Role role;
        std::string name;
    };

    /// Everything that an assistive tool finds in the window.
    [[nodiscard]] std::vector<Node> accessibleTree() const {
        std::vector<Node> nodes;
        collect(QAccessible::queryAccessibleInterface(view_.get()), nodes);
        return nodes;
    }

    /// Controls take their names from their texts only while a screen reader runs, which no test can pretend.
    [[nodiscard]] static QString nameOf(QAccessibleInterface& element) {
        const QString name = element.text(QAccessible::Name);
        return name.isEmpty() && element.object() != nullptr ? element.object()->property("text").toString()
                                                             : name;
    }

    static void collect(QAccessibleInterface* element, std::vector<Node>& nodes) {
        if (element == nullptr) {
            return;
        }
        nodes.push_back({element, element->role(), nameOf(*element).toStdString()});
        for (int child = 0; child < element->childCount(); ++child) {
            collect(element->child(child), nodes);
        }
    }

    /// The items in sight, in the order in which they are drawn.
    static void collect(QQuickItem* item, std::vector<QQuickItem*>& items) {
        if (!item->isVisible()) {
            return;
        }
        items.push_back(item);
        for (QQuickItem* child : item->childItems()) {
            collect(child, items);
        }
    }

    /// The program's own buttons, and the toolkit's: the rows of the applications and the switch.
    [[nodiscard]] static bool isButton(const QQuickItem& item) {
        return qobject_cast<const Pressable*>(&item) != nullptr || item.inherits("QQuickAbstractButton");
    }

    [[nodiscard]] std::vector<QQuickItem*> buttons() const {
        std::vector<QQuickItem*> items;
        collect(view_->contentItem(), items);
        std::erase_if(items, [](const QQuickItem* item) { return !isButton(*item); });
        return items;
    }

    /// The button of that label in sight; the last one lies on top.
    [[nodiscard]] QQuickItem* button(const char* label) const {
        QQuickItem* found = nullptr;
        for (QQuickItem* item : buttons()) {
            if (item->property("text").toString() == QLatin1String(label)) {
                found = item;
            }
        }
        return found;
    }

    /// The element of that name, once it is there.
    [[nodiscard]] QAccessibleInterface* find(const std::string& name) const {
        QAccessibleInterface* found = nullptr;
        static_cast<void>(test::waitUntil(
            [&] {
                for (const Node& node : accessibleTree()) {
                    if (node.name == name) {
                        found = node.interface;
                    }
                }
                return found != nullptr;
            },
            std::chrono::seconds(5)));
        return found;
    }

    /// Whether the item that has the focus lies within the modal.
    [[nodiscard]] bool focusIsInModal() const {
        for (const QQuickItem* item = view_->activeFocusItem(); item != nullptr; item = item->parentItem()) {
            if (QString::fromLatin1(item->metaObject()->className())
                    .startsWith(QLatin1String("ModalOverlay"))) {
                return true;
            }
        }
        return false;
    }

    Warnings warnings_;
    bool scanned_ = false;
    bool active_ = false;
    UninstallerViewModel* model_ = nullptr;
    std::unique_ptr<ContentView> view_;
};

TEST_F(ContentViewTest, LoadsWithoutAWarning) {
    EXPECT_EQ(view_->status(), QQuickView::Ready);
    EXPECT_EQ(view_->minimumSize(), QSize(900, 650));
    EXPECT_EQ(&view_->controller(), model_);
}

TEST_F(ContentViewTest, ShowsEveryPane) {
    const std::pair<const char*, const char*> panes[] = {{"apps", "Ollama"},
                                                         {"models", "pub/foo.gguf"},
                                                         {"containers", "Stop web"},
                                                         {"console", "Activity log"}};
    for (const auto& [tab, element] : panes) {
        state().setSelectedTab(QString::fromLatin1(tab));
        EXPECT_NE(find(element), nullptr) << tab;
        EXPECT_NE(find(state().title().toStdString()), nullptr) << tab;
        EXPECT_FALSE(view_->grabWindow().isNull());
    }
    state().setSelectedTab(QStringLiteral("elsewhere"));
    EXPECT_NE(find("Execution Console Logs"), nullptr);
}

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

TEST_F(ContentViewTest, MovesBetweenTheTabsWithTheArrowKeys) {
    button("Applications")->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Down);
    EXPECT_EQ(state().selectedTab(), QStringLiteral("models"));
    EXPECT_TRUE(button("Local Models")->hasActiveFocus());
    press(Qt::Key_Up);
    EXPECT_EQ(state().selectedTab(), QStringLiteral("apps"));
    EXPECT_TRUE(button("Applications")->property("visualFocus").toBool());
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

TEST_F(ContentViewTest, AModalTakesTheFocusBack) {
    state().requestSelfUninstall();
    ASSERT_TRUE(test::waitUntil([this] { return focusIsInModal(); }));
    button("Scan System")->forceActiveFocus();
    EXPECT_TRUE(test::waitUntil([this] { return focusIsInModal(); }));
}

TEST_F(ContentViewTest, DisablesEverythingUnderneathAModal) {
    const std::vector<QQuickItem*> underneath = buttons();
    ASSERT_GE(underneath.size(), 7U);
    QQuickItem* const scanButton = button("Scan System");
    ASSERT_NE(scanButton, nullptr);
    EXPECT_TRUE(scanButton->isEnabled());
    QAccessibleInterface* const ollama = find("Ollama");
    ASSERT_NE(ollama, nullptr);
    state().requestSelfUninstall();
    ASSERT_NE(find("Type the eight digit confirmation code manually"), nullptr);
    for (const QQuickItem* item : underneath) {
        EXPECT_FALSE(item->isEnabled()) << item->property("text").toString().toStdString();
    }
    // Nor can an assistive tool press what lies underneath.
    ASSERT_NE(ollama->actionInterface(), nullptr);
    ollama->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(state().selectionCount(), QStringLiteral("0 selected"));
    // The modal's own: one is there for the taking, the other waits for the code.
    ASSERT_NE(button("Cancel"), nullptr);
    EXPECT_TRUE(button("Cancel")->isEnabled());
    EXPECT_FALSE(button("Uninstall Zentrill")->isEnabled());
    state().confirmation()->dismissModal();
    EXPECT_TRUE(scanButton->isEnabled());
    ollama->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(state().selectionCount(), QStringLiteral("1 selected"));
}

TEST_F(ContentViewTest, TabNeverLeavesAModal) {
    state().requestContainerRemoval(2);
    ASSERT_TRUE(test::waitUntil([this] { return focusIsInModal(); }));
    QSet<const QQuickItem*> visited;
    for (int step = 0; step < 12; ++step) {
        press(Qt::Key_Tab, QStringLiteral("\t"));
        ASSERT_TRUE(focusIsInModal()) << step;
        visited.insert(view_->activeFocusItem());
    }
    for (int step = 0; step < 12; ++step) {
        press(Qt::Key_Backtab, {}, Qt::ShiftModifier);
        ASSERT_TRUE(focusIsInModal()) << step;
        visited.insert(view_->activeFocusItem());
    }
    // The code field and "Cancel".
    EXPECT_EQ(visited.size(), 2);
}

TEST_F(ContentViewTest, StartsAConfirmationInTheCodeField) {
    state().requestContainerRemoval(2);
    ASSERT_TRUE(test::waitUntil(
        [this] { return qobject_cast<ManualCodeTextView*>(view_->activeFocusItem()) != nullptr; }));
    press(Qt::Key_4, QStringLiteral("4"));
    press(Qt::Key_A, QStringLiteral("a"));
    press(Qt::Key_2, QStringLiteral("2"));
    EXPECT_EQ(state().confirmation()->confirmationInput(), QStringLiteral("42"));
}

TEST_F(ContentViewTest, LetsNoAssistiveToolWriteTheCode) {
    state().requestContainerRemoval(2);
    ASSERT_TRUE(test::waitUntil([this] { return focusIsInModal(); }));
    QAccessibleInterface* const field = find("Type the eight digit confirmation code manually");
    ASSERT_NE(field, nullptr);
    press(Qt::Key_1, QStringLiteral("1"));
    ASSERT_EQ(field->text(QAccessible::Value), QStringLiteral("1"));
    field->setText(QAccessible::Value, state().confirmation()->confirmationCode());
    EXPECT_EQ(field->text(QAccessible::Value), QStringLiteral("1"));
    EXPECT_EQ(state().confirmation()->confirmationInput(), QStringLiteral("1"));
}

TEST_F(ContentViewTest, ConfirmsWithTheTypedCodeAndReturn) {
    state().requestContainerRemoval(2);
    ASSERT_TRUE(test::waitUntil([this] { return focusIsInModal(); }));
    press(Qt::Key_Return, QStringLiteral("\r"));
    EXPECT_TRUE(state().confirmation()->isPending());
    for (const QChar digit : state().confirmation()->confirmationCode()) {
        press(digit.unicode(), QString(digit));
    }
    ASSERT_NE(button("Delete"), nullptr);
    EXPECT_TRUE(button("Delete")->isEnabled());
    press(Qt::Key_Return, QStringLiteral("\r"));
    EXPECT_FALSE(state().confirmation()->isPending());
    ASSERT_TRUE(test::waitUntil([this] { return model_->showResultAlert(); }));
    EXPECT_NE(find("Container Removed"), nullptr);
    ASSERT_NE(button("OK"), nullptr);
    // What comes before the result can have been seen was meant for something else.
    press(Qt::Key_Return, QStringLiteral("\r"));
    EXPECT_TRUE(model_->showResultAlert());
    ASSERT_TRUE(test::waitUntil([this] { return button("OK")->hasActiveFocus(); }));
    press(Qt::Key_Return, QStringLiteral("\r"));
    EXPECT_FALSE(model_->showResultAlert());
}

TEST_F(ContentViewTest, DismissesAModalWithEscape) {
    state().requestContainerRemoval(2);
    ASSERT_TRUE(test::waitUntil([this] { return focusIsInModal(); }));
    press(Qt::Key_1, QStringLiteral("1"));
    press(Qt::Key_Escape, QStringLiteral("\x1B"));
    EXPECT_FALSE(state().modalShown());
    EXPECT_FALSE(model_->isBusy());
    EXPECT_TRUE(test::waitUntil([this] { return view_->activeFocusItem() != nullptr && !focusIsInModal(); }));
    // The next one starts empty.
    state().requestContainerRemoval(2);
    ASSERT_TRUE(test::waitUntil([this] { return focusIsInModal(); }));
    EXPECT_EQ(state().confirmation()->confirmationInput(), QString());
}

TEST_F(ContentViewTest, MarksTheFocusWhileTheKeyboardIsUsed) {
    QQuickItem* const scanButton = button("Scan System");
    const auto marked = [&] { return scanButton->property("visualFocus").toBool(); };
    // However the focus came there.
    scanButton->forceActiveFocus(Qt::OtherFocusReason);
    EXPECT_FALSE(marked());
    press(Qt::Key_Shift);
    EXPECT_TRUE(marked());
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent event(type, QPointF(300, 40), QPointF(300, 40), Qt::LeftButton, Qt::LeftButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(view_.get(), &event);
    }
    EXPECT_TRUE(scanButton->hasActiveFocus());
    EXPECT_FALSE(marked());
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
