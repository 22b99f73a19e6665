#pragma once

#include <QObject>
#include <QRect>
#include <QString>
#include <QTimer>

#include <optional>
#include <string>

class QWindow;

namespace zentrill {

/// Keeps a window's place and size in a property list under a name, as AppKit's frame autosave does: key
/// "NSWindow Frame <name>", value "x y width height" and the screen's four numbers. It is the only thing
/// that the program writes, and it is written only when it differs from what is there.
class WindowFrameAutosave : public QObject {
    Q_OBJECT

public:
    /// `window` outlives this object. `propertyList` is the file's absolute path; with an empty one nothing
    /// is read or written.
    WindowFrameAutosave(QWindow& window, std::string propertyList, QObject* parent = nullptr);

    /// Places the window where it was last saved under `name` and saves it there from now on. An empty name
    /// ends the saving: nothing is written any more, not even a pending change.
    void setAutosaveName(const QString& name);

    [[nodiscard]] const QString& autosaveName() const { return name_; }

    /// Whether no change is pending.
    [[nodiscard]] bool isSettled() const { return !settled_.isActive(); }

    /// Writes a pending change now. Returns false when the file could not be written.
    bool save();

    /// Converts a frame to its saved text and back; nothing for a text without a frame of sensible size.
    [[nodiscard]] static QString text(const QRect& frame, const QRect& screen);
    [[nodiscard]] static std::optional<QRect> frame(const QString& text);

    /// The part of a screen's available `geometry` that a window's content can fill, below its title bar.
    [[nodiscard]] static QRect room(const QRect& geometry);

    /// `frame` unchanged if enough of its top edge is on one of the `screens` to grab it, otherwise centred
    /// on the first one; not smaller than `minimum`. A frame larger than its screen is made to fit, even if
    /// that is below the minimum.
    [[nodiscard]] static QRect broughtBack(QRect frame, const QList<QRect>& screens, QSize minimum);

private:
    void restore();
    void noteChange();
    bool write();
    [[nodiscard]] std::string key() const;

    QWindow& window_;
    std::string propertyList_;
    QString name_;
    QString saved_;
    QTimer settled_;
};

} // namespace zentrill
