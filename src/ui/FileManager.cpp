#include "ui/FileManager.h"

#include "ui/PathData.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QStringList>

#include <functional>
#include <utility>

namespace zentrill {

namespace {

constexpr QLatin1String service("org.freedesktop.FileManager1");
constexpr QLatin1String servicePath("/org/freedesktop/FileManager1");
constexpr QLatin1String bus("org.freedesktop.DBus");
constexpr QLatin1String busPath("/org/freedesktop/DBus");

QDBusConnection connection(const QString& address) {
    return address.isEmpty() ? QDBusConnection::sessionBus()
                             : QDBusConnection::connectToBus(address, address);
}

/// Hands the answer to `then`, unless `asker` is gone by then.
template <typename Reply>
void ask(const QString& address, const QDBusMessage& question, QObject& asker,
         std::function<void(const Reply&)> then) {
    auto* const answer = new QDBusPendingCallWatcher(connection(address).asyncCall(question), &asker);
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, &asker,
                     [then = std::move(then)](QDBusPendingCallWatcher* answered) {
                         answered->deleteLater();
                         then(Reply(*answered));
                     });
}

} // namespace

FileManager::FileManager(QString busAddress, QObject* parent)
    : QObject(parent), busAddress_(std::move(busAddress)) {}

FileManager::~FileManager() = default;

// NOLINTBEGIN(clang-analyzer-cplusplus.NewDeleteLeaks): whoever asks is the answer's parent
void FileManager::look() {
    if (!connection(busAddress_).isConnected()) {
        setThere(false);
        return;
    }
    QDBusMessage runs = QDBusMessage::createMethodCall(bus, busPath, bus, QStringLiteral("NameHasOwner"));
    runs << QString(service);
    ask<QDBusPendingReply<bool>>(busAddress_, runs, *this, [this](const QDBusPendingReply<bool>& running) {
        if (running.isValid() && running.value()) {
            setThere(true);
            return;
        }
        const QDBusMessage starts =
            QDBusMessage::createMethodCall(bus, busPath, bus, QStringLiteral("ListActivatableNames"));
        ask<QDBusPendingReply<QStringList>>(
            busAddress_, starts, *this, [this](const QDBusPendingReply<QStringList>& activatable) {
                setThere(activatable.isValid() && activatable.value().contains(service));
            });
    });
}

void FileManager::show(const std::string& path) {
    if (!connection(busAddress_).isConnected()) {
        Q_EMIT failed(path, QStringLiteral("there is no session bus"));
        return;
    }
    QDBusMessage request =
        QDBusMessage::createMethodCall(service, servicePath, service, QStringLiteral("ShowItems"));
    // Without an ID that a desktop gave to what a person started.
    request << QStringList{QString::fromLatin1(fileUri(path))} << QString();
    ask<QDBusPendingReply<>>(busAddress_, request, *this, [this, path](const QDBusPendingReply<>& answer) {
        if (answer.isError()) {
            Q_EMIT failed(path, answer.error().message());
        }
    });
}

// NOLINTEND(clang-analyzer-cplusplus.NewDeleteLeaks)

void FileManager::setThere(bool isThere) {
    if (isThere != isThere_) {
        isThere_ = isThere;
        Q_EMIT isThereChanged();
    }
}

} // namespace zentrill
