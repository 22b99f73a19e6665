#pragma once

#include "UiFixture.h"
#include "ui/ContentView.h"
#include "ui/ContentViewState.h"

#include <QImage>
#include <QQuickItem>
#include <QTest>

#include <vector>

namespace zentrill::test {

/// The real window over the lists that a scan filled, and ways to look at the items in it.
class ViewFixture : public UiFixture {
protected:
    /// Scans, then shows the window at that size, with the pane of the tab.
    [[nodiscard]] bool open(const char* tab, QSize size = {900, 650}) {
        if (!scan()) {
            return false;
        }
        UninstallerViewModel* const controller = controller_.get();
        view_ = std::make_unique<ContentView>([&] { return std::move(controller_); });
        model_ = controller;
        view_->resize(size);
        view_->state().setSelectedTab(QString::fromLatin1(tab));
        view_->show();
        view_->requestActivate();
        return waitUntil(
            [this] { return view_->state().windowShown() && view_->activeFocusItem() != nullptr; });
    }

    [[nodiscard]] ContentViewState& state() const { return view_->state(); }

    /// Shows a result whose message is this, by way of a container that cannot be stopped.
    [[nodiscard]] bool showResult(const std::string& message) {
        answer_ = [message](const FakeCommandRunner::Call&) { return failed(1, message); };
        locator_->set("/opt/docker");
        model_->stopContainer({.id = "c1", .name = "web", .image = "web:1", .status = "Up 3 minutes"});
        return waitUntil([this] { return model_->showResultAlert(); }) &&
               waitUntil([this] { return !ofType("ResultModalContents").empty(); });
    }

    /// The items in sight, in the order in which they are drawn.
    [[nodiscard]] std::vector<QQuickItem*> items() const {
        std::vector<QQuickItem*> found;
        collect(view_->contentItem(), found);
        return found;
    }

    /// The items in sight that are of that QML file, or C++ class, or made from it.
    [[nodiscard]] std::vector<QQuickItem*> ofType(const char* type) const {
        std::vector<QQuickItem*> found = items();
        std::erase_if(found, [&](const QQuickItem* item) {
            for (const QMetaObject* kind = item->metaObject(); kind != nullptr; kind = kind->superClass()) {
                const QString name = QString::fromLatin1(kind->className());
                if (name == QLatin1String(type) ||
                    name.startsWith(QLatin1String(type) + QLatin1String("_QML"))) {
                    return false;
                }
            }
            return true;
        });
        return found;
    }

    /// Those of them whose property has that value.
    [[nodiscard]] std::vector<QQuickItem*> ofType(const char* type, const char* property,
                                                  const QString& value) const {
        std::vector<QQuickItem*> found = ofType(type);
        std::erase_if(found,
                      [&](const QQuickItem* item) { return item->property(property).toString() != value; });
        return found;
    }

    /// The topmost item in sight that draws this text.
    [[nodiscard]] QQuickItem* text(const QString& content) const {
        QQuickItem* found = nullptr;
        for (QQuickItem* item : items()) {
            if ((item->inherits("QQuickText") || item->inherits("QQuickTextEdit")) &&
                item->property("text").toString() == content) {
                found = item;
            }
        }
        return found;
    }

    [[nodiscard]] static QRectF place(const QQuickItem& item) {
        return item.mapRectToScene(QRectF(0, 0, item.width(), item.height()));
    }

    /// The colour of the window's pixel at a point of an item.
    [[nodiscard]] QColor pixel(const QQuickItem& item, QPointF point) const {
        const QImage picture = view_->grabWindow();
        return picture.pixelColor((item.mapToScene(point) * picture.devicePixelRatio()).toPoint());
    }

    /// Moves the pointer, as a hand does, to a point of an item.
    void pointAt(const QQuickItem& item, QPointF point) const {
        QTest::mouseMove(view_.get(), item.mapToScene(point).toPoint() - QPoint(1, 1));
        QTest::mouseMove(view_.get(), item.mapToScene(point).toPoint());
    }

    UninstallerViewModel* model_ = nullptr;
    std::unique_ptr<ContentView> view_;

private:
    static void collect(QQuickItem* item, std::vector<QQuickItem*>& found) {
        if (!item->isVisible()) {
            return;
        }
        found.push_back(item);
        for (QQuickItem* child : item->childItems()) {
            collect(child, found);
        }
    }
};

} // namespace zentrill::test
