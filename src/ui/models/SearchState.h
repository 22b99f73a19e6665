#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace zentrill {

/// Whether a search field is open, and what has been typed into it. There is no search while it is closed.
class SearchState : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by ContentViewState")
    Q_PROPERTY(bool searching READ isSearching WRITE setSearching NOTIFY searchingChanged FINAL)
    Q_PROPERTY(QString needle READ needle WRITE setNeedle NOTIFY needleChanged FINAL)

public:
    using QObject::QObject;

    [[nodiscard]] bool isSearching() const { return searching_; }

    /// Closing it empties the needle.
    void setSearching(bool searching);

    [[nodiscard]] const QString& needle() const { return needle_; }

    void setNeedle(const QString& needle);

Q_SIGNALS:
    void searchingChanged();
    void needleChanged();

private:
    bool searching_ = false;
    QString needle_;
};

} // namespace zentrill
