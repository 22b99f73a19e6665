#include "controller/DisplayText.h"

#include "platform/Utf8.h"

#include <QByteArrayView>
#include <QChar>
#include <QList>
#include <QStringDecoder>

#include <algorithm>
#include <cstddef>

namespace zentrill {

namespace {

enum class LineMarks { escaped, kept };

/// Controls, line ends, and what Unicode calls format characters: they change the direction of the text that
/// follows, join or separate their neighbours, or cannot be seen.
bool misleads(char32_t character) {
    switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return false;
    }
}

QString hexadecimal(char32_t value, int digits) {
    return QStringLiteral("%1").arg(static_cast<uint>(value), digits, 16, QLatin1Char('0')).toUpper();
}

void appendEscaped(QString& text, char32_t character) {
    if (character == U'\n') {
        text += QLatin1String("\\n");
    } else if (character == U'\t') {
        text += QLatin1String("\\t");
    } else if (character < 0x100) {
        text += QLatin1String("\\x") + hexadecimal(character, 2);
    } else {
        text += QLatin1String("\\u") + hexadecimal(character, 4);
    }
}

/// The length of a valid sequence that begins with this byte.
constexpr std::size_t announcedLength(unsigned char first) {
    if (first < 0x80) {
        return 1;
    }
    if (first < 0xE0) {
        return 2;
    }
    return first < 0xF0 ? 3 : 4;
}

/// The length in bytes of the valid UTF-8 that `bytes` begin with.
std::size_t validLength(std::string_view bytes) {
    std::size_t length = 0;
    while (length < bytes.size()) {
        const std::size_t next = announcedLength(static_cast<unsigned char>(bytes[length]));
        if (!isValidUtf8(bytes.substr(length, next))) {
            break;
        }
        length += next;
    }
    return length;
}

void appendText(QString& text, std::string_view valid, LineMarks lineMarks) {
    // A byte order mark is shown like every other character that cannot be seen.
    QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    const QString decoded = decode(QByteArrayView(valid.data(), static_cast<qsizetype>(valid.size())));
    for (const uint character : decoded.toUcs4()) {
        const bool keptLineMark = lineMarks == LineMarks::kept && (character == U'\n' || character == U'\t');
        if (misleads(character) && !keptLineMark) {
            appendEscaped(text, character);
        } else {
            text += QChar::fromUcs4(character);
        }
    }
}

QString display(std::string_view bytes, LineMarks lineMarks) {
    const bool plain = std::ranges::all_of(bytes, [](char byte) { return byte >= 0x20 && byte < 0x7F; });
    if (plain) {
        return QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size()));
    }
    QString text;
    text.reserve(static_cast<qsizetype>(bytes.size()));
    while (!bytes.empty()) {
        const std::size_t length = validLength(bytes);
        appendText(text, bytes.substr(0, length), lineMarks);
        bytes.remove_prefix(length);
        if (!bytes.empty()) {
            appendEscaped(text, static_cast<unsigned char>(bytes.front()));
            bytes.remove_prefix(1);
        }
    }
    return text;
}

} // namespace

QString displayName(std::string_view bytes) {
    return display(bytes, LineMarks::escaped);
}

QString displayMessage(std::string_view bytes) {
    return display(bytes, LineMarks::kept);
}

} // namespace zentrill
