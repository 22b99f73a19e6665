#include "controller/AppDelegate.h"

#include "controller/MacWindow.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

namespace zentrill {

namespace {

constexpr QSize initialSize{950, 700};

void centre(QWindow& window) {
    const QScreen* screen = window.screen();
    if (screen == nullptr) {
        return;
    }
    QRect frame(QPoint(), window.size());
    frame.moveCenter(screen->availableGeometry().center());
    window.setPosition(frame.topLeft());
}

} // namespace

AppDelegate::AppDelegate(MainViewFactory makeMainView, std::string preferences)
    : makeMainView_(std::move(makeMainView)), preferences_(std::move(preferences)) {}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
    window_ = makeMainView_();
    window_->setTitle(QStringLiteral("Zentrill - Environment Cleaner"));
    window_->resize(initialSize);
    centre(*window_);
    frame_ = std::make_unique<WindowFrameAutosave>(*window_, preferences_);
    frame_->setAutosaveName(QStringLiteral("MainWindow"));
    window_->installEventFilter(this);
    styleMacWindow(*window_);
    window_->show();
    window_->requestActivate();
}

void AppDelegate::forgetWindowState() {
    if (frame_) {
        frame_->setAutosaveName({});
    }
}

bool AppDelegate::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Close && frame_) {
        frame_->save();
    }
    return QObject::eventFilter(watched, event);
}

} // namespace zentrill
