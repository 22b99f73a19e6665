// Two windows for the tests of drag and drop: from the first a person drags a text or a file, the second
// takes every drop, to see that the dragging works.
//
//     drag_source text TEXT    or    drag_source file PATH
//
// Prints "ready", "dragging", "entered", "dropped", and "ended ACTION" (0 where nobody took it).

#include <QDrag>
#include <QDragEnterEvent>
#include <QGuiApplication>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QRasterWindow>
#include <QUrl>

#include <cstdio>

namespace {

void say(const QString& line) {
    static_cast<void>(std::puts(qUtf8Printable(line)));
    static_cast<void>(std::fflush(stdout));
}

class Area : public QRasterWindow {
public:
    Area(const QColor& color, int y) : color_(color) {
        setFlags(Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
        setGeometry(1000, y, 200, 200);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override { QPainter(this).fillRect(QRect({}, size()), color_); }

private:
    QColor color_;
};

class Source : public Area {
public:
    Source(QString kind, QString what)
        : Area(Qt::darkGreen, 50), kind_(std::move(kind)), what_(std::move(what)) {}

protected:
    void mouseMoveEvent(QMouseEvent* event) override {
        if (dragging_ || !event->buttons().testFlag(Qt::LeftButton)) {
            return;
        }
        dragging_ = true;
        auto* data = new QMimeData;
        if (kind_ == QLatin1String("file")) {
            data->setUrls({QUrl::fromLocalFile(what_)});
        } else {
            data->setText(what_);
        }
        auto* drag = new QDrag(this); // Deletes itself when it is over.
        drag->setMimeData(data);
        say(QStringLiteral("dragging"));
        say(QStringLiteral("ended %1").arg(drag->exec(Qt::CopyAction | Qt::MoveAction)));
        dragging_ = false;
    }

private:
    QString kind_;
    QString what_;
    bool dragging_ = false;
};

class Target : public Area {
public:
    Target() : Area(Qt::darkRed, 300) {}

protected:
    bool event(QEvent* event) override {
        switch (event->type()) {
        case QEvent::DragEnter:
            say(QStringLiteral("entered"));
            [[fallthrough]];
        case QEvent::DragMove:
            static_cast<QDropEvent*>(event)->acceptProposedAction();
            return true;
        case QEvent::Drop:
            static_cast<QDropEvent*>(event)->acceptProposedAction();
            say(QStringLiteral("dropped"));
            return true;
        default:
            return Area::event(event);
        }
    }
};

} // namespace

int main(int argc, char* argv[]) {
    const QGuiApplication application(argc, argv);
    if (QGuiApplication::arguments().size() != 3) {
        return 2;
    }
    Source source(QGuiApplication::arguments().at(1), QGuiApplication::arguments().at(2));
    Target target;
    source.show();
    target.show();
    say(QStringLiteral("ready"));
    return QGuiApplication::exec();
}
