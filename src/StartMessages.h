#pragma once

#include <QString>
#include <QtGlobal>

namespace zentrill {

/// Between the person and what Qt says while it looks for the display.
///
/// Qt tries one kind of display after the other and tells of each that it cannot have. When none is left, it
/// has the program crash. With this, nothing is said of a search that succeeds, and one that fails is told in
/// a sentence and by the program's exit status, EXIT_FAILURE.
///
///     StartMessages messages;
///     QGuiApplication application(argc, argv);
///     messages.displayFound();
///
/// There is one at a time, on the main thread. What is not about this search is shown as ever.
class StartMessages {
public:
    StartMessages();
    ~StartMessages();
    Q_DISABLE_COPY_MOVE(StartMessages)

    void displayFound();

private:
    static void handle(QtMsgType type, const QMessageLogContext& context, const QString& message);
    /// Whether the message is one that nobody needs.
    bool takes(QtMsgType type, const QMessageLogContext& context, const QString& message);
    [[noreturn]] void refuse() const;

    static StartMessages* current;
    QtMessageHandler previous_;
    bool searching_ = true;
    /// What stood against the kind of display that was tried last.
    QString obstacle_;
};

} // namespace zentrill
