#include "StartMessages.h"

#include <QByteArray>

#include <cstdio>
#include <cstdlib>

namespace zentrill {

StartMessages* StartMessages::current = nullptr;

namespace {

/// "qt.qpa.xcb", "qt.qpa.plugin" and the like: the layer that looks for displays. The message that no Wayland
/// compositor answers names no layer.
bool isAboutDisplays(const QMessageLogContext& context, const QString& message) {
    return QByteArray(context.category).startsWith("qt.qpa.") ||
           message.startsWith(QLatin1String("Failed to create wl_display"));
}

/// Qt wants a runtime folder for things that this program does not use, so it gets none. See main.cpp.
bool isAboutTheRuntimeFolder(const QString& message) {
    return message.startsWith(QLatin1String("QStandardPaths: ")) &&
           message.contains(QLatin1String("'/dev/null/runtime-"));
}

QString asReason(QString message) {
    message.remove(QLatin1String(R"( in "")"));
    message = message.trimmed();
    if (!message.isEmpty()) {
        message.front() = message.front().toLower();
    }
    return message;
}

} // namespace

StartMessages::StartMessages() : previous_(qInstallMessageHandler(&StartMessages::handle)) {
    current = this;
}

StartMessages::~StartMessages() {
    qInstallMessageHandler(previous_);
    current = nullptr;
}

void StartMessages::displayFound() {
    searching_ = false;
}

void StartMessages::handle(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (current == nullptr || current->takes(type, context, message)) {
        return;
    }
    if (current->previous_ != nullptr) {
        current->previous_(type, context, message);
    } else {
        static_cast<void>(
            std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, message))));
    }
}

bool StartMessages::takes(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (isAboutTheRuntimeFolder(message)) {
        return true;
    }
    if (!searching_) {
        return false;
    }
    if (type == QtFatalMsg) {
        refuse();
    }
    if (type == QtDebugMsg || !isAboutDisplays(context, message)) {
        return false;
    }
    // That a plugin could not be loaded "even though it was found" says less than its own message before.
    if (!message.contains(QLatin1String("even though it was found"))) {
        obstacle_ = asReason(message);
    }
    return true;
}

void StartMessages::refuse() const {
    const bool named = !qEnvironmentVariableIsEmpty("DISPLAY") ||
                       !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
                       !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
    const QString reason = named && !obstacle_.isEmpty() ? obstacle_ : QStringLiteral("there is no display");
    static_cast<void>(std::fprintf(stderr, "Zentrill cannot open its window: %s.\n", qPrintable(reason)));
    std::_Exit(EXIT_FAILURE);
}

} // namespace zentrill
