// The peer of the start-up benchmark: the least that a Qt Quick program on the same renderer can be.
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>

int main(int argc, char* argv[]) {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QGuiApplication::setDesktopSettingsAware(false);
    QGuiApplication application(argc, argv);
    QQuickView view;
    QQmlComponent component(view.engine());
    component.setData("import QtQuick\n"
                      "Rectangle { color: '#343029'; Text { text: 'Zentrill'; color: 'white' } }",
                      QUrl());
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    view.setContent(QUrl(), &component, component.create());
    view.resize(950, 700);
    view.setPosition(165, 100);
    view.show();
    return QGuiApplication::exec();
}
