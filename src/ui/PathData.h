#pragma once

#include <QByteArray>

#include <memory>
#include <string_view>

QT_BEGIN_NAMESPACE
class QMimeData;
QT_END_NAMESPACE

namespace zentrill {

/// "file:///home/a%20b": every byte but letters, digits and "-._~/" in hexadecimal.
[[nodiscard]] QByteArray fileUri(std::string_view path);

/// A path for the clipboard, byte for byte: as text if it is UTF-8, otherwise as "text/plain" with the bytes
/// themselves and as a URI in a "text/uri-list", for programs that would read the bytes differently.
[[nodiscard]] std::unique_ptr<QMimeData> pathData(std::string_view path);

} // namespace zentrill
