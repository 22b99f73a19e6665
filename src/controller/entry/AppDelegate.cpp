#include "entry/AppDelegate.h"

#include "entry/MacWindow.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <algorithm>

namespace zentrill {

namespace {

constexpr QSize initialSize{950, 700};

/// Allows the window to be smaller than `minimum` if the screen is.
void fitMinimum(QWindow& window, QSize minimum) {
    if (const QScreen* screen = window.screen()) {
        window.setMinimumSize(
            minimum.boundedTo(WindowFrameAutosave::room(screen->availableGeometry()).size()));
    }
}

/// In the middle of its screen, but with its title bar in sight.
void centre(QWindow& window) {
    const QScreen* screen = window.screen();
    if (screen == nullptr) {
        return;
    }
    const QRect room = WindowFrameAutosave::room(screen->availableGeometry());
    QRect frame(QPoint(), window.size().boundedTo(room.size()));
    frame.moveCenter(screen->availableGeometry().center());
    frame.moveTop(std::max(frame.top(), room.top()));
    window.setGeometry(frame);
}

} // namespace

AppDelegate::AppDelegate(MainViewFactory makeMainView, std::string preferences)
    : makeMainView_(std::move(makeMainView)), preferences_(std::move(preferences)) {}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
    window_ = makeMainView_();
    window_->setTitle(QStringLiteral("Zentrill - Environment Cleaner"));
    const QSize minimum = window_->minimumSize();
    fitMinimum(*window_, minimum);
    connect(window_.get(), &QWindow::screenChanged, this, [this, minimum] { fitMinimum(*window_, minimum); });
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
