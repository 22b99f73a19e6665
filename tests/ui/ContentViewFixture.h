#pragma once

#include "UiFixture.h"
#include "ui/ContentView.h"
#include "ui/ContentViewState.h"
#include "ui/items/Pressable.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QQuickItem>
#include <gtest/gtest.h>

#include <algorithm>

namespace zentrill::test {

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

/// The window over a scanned home, and what finds its way around in it.
class ContentViewFixture : public UiFixture {
protected:
    ContentViewFixture() {
        playDocker();
        home_.makeDirectory(".ollama");
        home_.makeFile(".lmstudio/models/pub/foo.gguf", "123");
        scanned_ = scan();
        UninstallerViewModel* const controller = controller_.get();
        view_ = std::make_unique<ContentView>([&] { return std::move(controller_); });
        model_ = controller;
        view_->resize(950, 700);
        view_->show();
        view_->requestActivate();
        active_ =
            waitUntil([this] { return view_->state().windowShown() && view_->activeFocusItem() != nullptr; });
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
        static_cast<void>(waitUntil(
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

} // namespace zentrill::test
