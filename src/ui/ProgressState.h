#pragma once

#include "controller/UninstallerViewModel.h"

#include <QObject>
#include <QString>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <chrono>
#include <cstdint>
#include <functional>

namespace zentrill {

/// How far a removal has come, as the header says it beside the description of the operation. It looks a few
/// times a second while a removal runs, and never otherwise.
class ProgressState : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by ContentViewState")
    Q_PROPERTY(QString text READ text NOTIFY textChanged FINAL)
    Q_PROPERTY(QString spokenText READ spokenText NOTIFY spokenChanged FINAL)
    Q_PROPERTY(QString path READ path NOTIFY spokenChanged FINAL)

public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    /// How often it looks.
    static constexpr std::chrono::milliseconds interval{250};

    /// `controller` outlives this object.
    explicit ProgressState(const UninstallerViewModel& controller,
                           Clock clock = &std::chrono::steady_clock::now, QObject* parent = nullptr);

    /// "28,445 items · 0:41" after so many removals and seconds, "1:02:03" above an hour; only the time if
    /// nothing has been removed.
    [[nodiscard]] static QString progressText(std::uint64_t removedCount, std::chrono::seconds time);

    /// Empty until there is something to say, and while nothing is being removed.
    [[nodiscard]] QString text() const { return text_; }

    /// The same for screen readers: it and the path change at most once a second.
    [[nodiscard]] QString spokenText() const { return spokenText_; }

    /// What is being removed, as display text; empty if nothing is.
    [[nodiscard]] QString path() const { return path_; }

    /// Finds out how far it is, if something is being removed.
    void refresh();

Q_SIGNALS:
    void textChanged();
    void spokenChanged();

private:
    void follow();
    void setText(const QString& text);
    void setSpoken(const QString& text, const QString& path);

    const UninstallerViewModel& controller_;
    Clock clock_;
    QTimer timer_;
    std::chrono::steady_clock::time_point begin_;
    /// The second of the last spoken text; negative before the first.
    std::chrono::seconds spokenTime_{-1};
    QString text_;
    QString spokenText_;
    QString path_;
};

} // namespace zentrill
