#pragma once

#include <QObject>
#include <QString>

#include <string>

namespace zentrill {

/// The desktop's file manager, asked over the session bus that is there (`org.freedesktop.FileManager1`). No
/// bus is started for it; a desktop that starts its file manager when that is first asked does so. On a Mac
/// it is the workspace.
///
/// Nothing waits for an answer: what comes of a question is a signal.
class FileManager : public QObject {
    Q_OBJECT

public:
    /// Over the bus at that address instead of the session's own.
    explicit FileManager(QString busAddress = {}, QObject* parent = nullptr);
    ~FileManager() override;

    FileManager(const FileManager&) = delete;
    FileManager& operator=(const FileManager&) = delete;
    FileManager(FileManager&&) = delete;
    FileManager& operator=(FileManager&&) = delete;

    /// What was known last; not before `look`.
    [[nodiscard]] bool isThere() const { return isThere_; }

    /// Asks whether there is one now.
    void look();

    /// Has the folder of that absolute path, given in bytes, shown with the item in it selected.
    void show(const std::string& path);

Q_SIGNALS:
    void isThereChanged();
    /// It did not show that path; `reason` is in the words of the bus.
    void failed(const std::string& path, const QString& reason);

private:
    void setThere(bool isThere);

    QString busAddress_;
    bool isThere_ = false;
};

} // namespace zentrill
