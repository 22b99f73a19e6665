#include "ui/ContentView.h"

#include "controller/UninstallerViewModel.h"
#include "ui/ContentViewState.h"
#include "ui/InputGuard.h"
#include "ui/KeyboardUse.h"
#include "ui/Shortcuts.h"
#include "ui/Typography.h"
#include "ui/WarmPalette.h"
#include "ui/items/ButtonAccessible.h"
#include "ui/items/ItemAccessible.h"
#include "ui/items/TextFieldAccessible.h"

#include <QFontMetricsF>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QtQml/qqmlextensionplugin.h>

#include <optional>

Q_IMPORT_QML_PLUGIN(ZentrillPlugin)

namespace zentrill {

namespace {

/// The smallest content at which everything fits.
constexpr QSize minimumContentSize{900, 650};

/// Opens the fonts of the first frame, so that its texts need not wait for them.
void openFirstFonts() {
    const Typography type;
    for (const QFont& font : {type.brand(), type.overline(), type.title(), type.control(), type.body()}) {
        static_cast<void>(QFontMetricsF(font).horizontalAdvance(QLatin1Char('Z')));
    }
}

/// Installs what the views tell assistive tools. The factory that was installed last is asked first, and Qt
/// Quick installs its own when it is first imported.
void installAccessibles(QQmlEngine& engine) {
    QQmlComponent(&engine).setData("import QtQuick\nQtObject {}", {});
    QAccessible::installFactory(&ItemAccessible::make);
    QAccessible::installFactory(&ButtonAccessible::make);
    QAccessible::installFactory(&TextFieldAccessible::make);
}

} // namespace

ContentView::ContentView(const ControllerFactory& makeController) {
    setResizeMode(QQuickView::SizeRootObjectToView);
    setMinimumSize(minimumContentSize);
    setColor(WarmPalette().canvas);
    engine()->addImportPath(QStringLiteral("qrc:/qt/qml"));
    const QUrl source(QStringLiteral("qrc:/qt/qml/Zentrill/ContentView.qml"));
    // The engine's thread loads the types of the views while this one does what does not need them.
    const QQmlComponent early(engine(), source, QQmlComponent::Asynchronous);
    openFirstFonts();
    installAccessibles(*engine());
    // The scan that it may begin starts other programs, which would take the processors from that thread.
    controller_ = makeController();
    state_ = std::make_unique<ContentViewState>(*controller_);
    connect(this, &QQuickWindow::frameSwapped, state_.get(), &ContentViewState::setWindowShown,
            Qt::QueuedConnection);
    connect(state_.get(), &ContentViewState::windowShownChanged, this, [this] {
        disconnect(this, &QQuickWindow::frameSwapped, state_.get(), &ContentViewState::setWindowShown);
    });
    setInitialProperties({{QStringLiteral("viewState"), QVariant::fromValue(state_.get())}});
    // What comes in later than the first frame.
    connect(state_.get(), &ContentViewState::partFailed, this, &ContentView::reportFailure);
    // Not while the key event is handled, which the window has to outlive.
    connect(state_.get(), &ContentViewState::closeRequested, this, &QWindow::close, Qt::QueuedConnection);
    setSource(source);
    if (status() == QQuickView::Error) {
        reportFailure(source);
    } else {
        keyboardUse_ = engine()->singletonInstance<KeyboardUse*>(qmlTypeId("Zentrill", 1, 0, "KeyboardUse"));
    }
    connect(this, &QQuickWindow::frameSwapped, state_->input(), &InputGuard::noteFrame);
}

ContentView::~ContentView() {
    // The items bind to the state, which binds to the controller, so they are destroyed in that order.
    setSource({});
}

void ContentView::reportFailure(const QUrl& file) {
    const QList<QQmlError> errors = QQmlComponent(engine(), file).errors();
    // The first ones name the views that need it, the last one what is missing.
    const QString reason = errors.isEmpty() ? file.toString() : errors.last().description();
    QMetaObject::invokeMethod(this, "failed", Qt::QueuedConnection, Q_ARG(QString, reason));
}

bool ContentView::event(QEvent* event) {
    // The items get presses of the pointer from here, before the window's own handlers are asked.
    return isStalePress(*event) || QQuickView::event(event);
}

bool ContentView::nativeEvent(const QByteArray& type, void* message, qintptr* result) {
    keyTimes_.noteNativeEvent(type, message);
    return QQuickView::nativeEvent(type, message, result);
}

void ContentView::keyPressEvent(QKeyEvent* event) {
    keyTimes_.setTime(*event);
    setKeyboardUsed(true);
    InputGuard& input = *state_->input();
    if (input.isRepetition(*event)) {
        QKeyEvent repetition(event->type(), event->key(), event->modifiers(), event->nativeScanCode(),
                             event->nativeVirtualKey(), event->nativeModifiers(), event->text(), true,
                             static_cast<quint16>(event->count()));
        repetition.setTimestamp(event->timestamp());
        if (input.admits(repetition)) {
            QQuickView::keyPressEvent(&repetition);
        }
        event->setAccepted(repetition.isAccepted());
    } else if (input.admits(*event)) {
        deliverPress(*event);
    }
}

void ContentView::deliverPress(QKeyEvent& press) {
    // What a modal does not take must not reach anything below it, even if the press has just closed it.
    const bool belowModal = state_->modalShown();
    QQuickView::keyPressEvent(&press);
    if (press.isAccepted() || press.isAutoRepeat() || belowModal) {
        return;
    }
    if (const std::optional<ShortcutAction> action = Shortcuts::actionOf(press)) {
        press.accept();
        state_->perform(*action);
    }
}

void ContentView::keyReleaseEvent(QKeyEvent* event) {
    keyTimes_.setTime(*event);
    if (state_->input()->admits(*event)) {
        QQuickView::keyReleaseEvent(event);
    }
}

void ContentView::focusOutEvent(QFocusEvent* event) {
    state_->input()->forgetHeldKeys();
    QQuickView::focusOutEvent(event);
}

bool ContentView::isStalePress(const QEvent& event) {
    if (event.type() == QEvent::MouseButtonPress) {
        setKeyboardUsed(false);
        pressAdmitted_ = state_->input()->admits(static_cast<const QMouseEvent&>(event));
    }
    const bool isPress =
        event.type() == QEvent::MouseButtonPress || event.type() == QEvent::MouseButtonDblClick;
    return isPress && !pressAdmitted_;
}

void ContentView::setKeyboardUsed(bool used) {
    if (keyboardUse_ != nullptr) {
        keyboardUse_->setCurrent(used);
    }
}

} // namespace zentrill
