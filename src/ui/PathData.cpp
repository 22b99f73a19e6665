#include "ui/PathData.h"

#include "platform/Utf8.h"

#include <QMimeData>
#include <QString>
#include <QStringDecoder>

namespace zentrill {

namespace {

QByteArray bytesOf(std::string_view path) {
    return {path.data(), static_cast<qsizetype>(path.size())};
}

} // namespace

QByteArray fileUri(std::string_view path) {
    return "file://" + bytesOf(path).toPercentEncoding("/");
}

std::unique_ptr<QMimeData> pathData(std::string_view path) {
    auto data = std::make_unique<QMimeData>();
    const QByteArray bytes = bytesOf(path);
    if (isValidUtf8(path)) {
        // A name may begin with what would be a byte order mark in a text.
        QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
        data->setText(decode(bytes));
    } else {
        data->setData(QStringLiteral("text/plain"), bytes);
        data->setData(QStringLiteral("text/uri-list"), fileUri(path) + "\r\n");
    }
    return data;
}

} // namespace zentrill
