#pragma once

#include <QObject>
#include <QString>

#include <string>

namespace zentrill {

/// The desktop's file manager, reached over the existing session bus (`org.freedesktop.FileManager1`). No bus
/// is started for it, but the desktop may start its file manager when it is first asked. On a Mac it is the
/// workspace.
///
/// Nothing waits for an answer; answers are signals.
class FileManager : public QObject {
    Q_OBJECT

public:
    /// Uses the bus at that address instead of the session's.
    explicit FileManager(QString busAddress = {}, QObject* parent = nullptr);
    ~FileManager() override;

    FileManager(const FileManager&) = delete;
    FileManager& operator=(const FileManager&) = delete;
    FileManager(FileManager&&) = delete;
    FileManager& operator=(FileManager&&) = delete;

    /// The last known answer; false before `look`.
    [[nodiscard]] bool isThere() const { return isThere_; }

    /// Asks whether there is one now.
    void look();

    /// Shows the folder of that absolute path, in bytes, with the item selected.
    void show(const std::string& path);

Q_SIGNALS:
    void isThereChanged();
    /// The path could not be shown; `reason` is in the words of the bus.
    void failed(const std::string& path, const QString& reason);

private:
    void setThere(bool isThere);

    QString busAddress_;
    bool isThere_ = false;
};

} // namespace zentrill
