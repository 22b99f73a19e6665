#pragma once

#include <QString>
#include <QtGlobal>

namespace zentrill {

/// Filters what Qt says while it looks for a display.
///
/// Qt tries one kind of display after the other and complains about each that it cannot get. If there is
/// none, it makes the program crash. With this, a search that succeeds is silent, and one that fails gives
/// one sentence and the exit status EXIT_FAILURE.
///
///     StartMessages messages;
///     QGuiApplication application(argc, argv);
///     messages.displayFound();
///
/// There is one at a time, on the main thread. Messages about anything else are shown as usual.
class StartMessages {
public:
    StartMessages();
    ~StartMessages();
    Q_DISABLE_COPY_MOVE(StartMessages)

    void displayFound();

private:
    static void handle(QtMsgType type, const QMessageLogContext& context, const QString& message);
    /// Whether nobody needs the message.
    bool takes(QtMsgType type, const QMessageLogContext& context, const QString& message);
    [[noreturn]] void refuse() const;

    static StartMessages* current;
    QtMessageHandler previous_;
    bool searching_ = true;
    /// Why the kind of display that was tried last could not be used.
    QString obstacle_;
};

} // namespace zentrill
