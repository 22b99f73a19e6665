#pragma once

#include <QByteArray>

#include <memory>
#include <string_view>

QT_BEGIN_NAMESPACE
class QMimeData;
QT_END_NAMESPACE

namespace zentrill {

/// "file:///home/a%20b": all but letters, digits and "-._~/" as the hexadecimal value of their bytes.
[[nodiscard]] QByteArray fileUri(std::string_view path);

/// A path for the clipboard, byte for byte: as text where it is UTF-8, otherwise as "text/plain" of the bytes
/// themselves, and as a URI in a "text/uri-list" for who would make other characters of them.
[[nodiscard]] std::unique_ptr<QMimeData> pathData(std::string_view path);

} // namespace zentrill
