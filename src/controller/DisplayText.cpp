#include "controller/DisplayText.h"

#include "platform/Utf8.h"

#include <QChar>

#include <algorithm>

namespace zentrill {

namespace {

/// Marks that change the direction of what follows them, and characters of no width.
constexpr bool misleads(char32_t character) {
    return character == 0x061C || (character >= 0x200B && character <= 0x200F) ||
           (character >= 0x2028 && character <= 0x202E) || (character >= 0x2060 && character <= 0x206F) ||
           character == 0xFEFF;
}

constexpr bool isControl(char32_t character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0);
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

/// How long a sequence is that begins with this byte, if it is valid at all.
constexpr std::size_t announcedLength(unsigned char first) {
    if (first < 0x80) {
        return 1;
    }
    if (first < 0xE0) {
        return 2;
    }
    return first < 0xF0 ? 3 : 4;
}

/// The length in bytes of the valid UTF-8 sequence that begins `bytes`, or 0.
std::size_t sequenceLength(std::string_view bytes) {
    const std::size_t length = announcedLength(static_cast<unsigned char>(bytes.front()));
    return isValidUtf8(bytes.substr(0, length)) ? length : 0;
}

/// The character that a valid sequence of that length stands for. Qt's decoder would swallow a byte order
/// mark.
char32_t decoded(std::string_view sequence) {
    const auto first = static_cast<unsigned char>(sequence.front());
    if (sequence.size() == 1) {
        return first;
    }
    char32_t character = first & (0xFFU >> (sequence.size() + 1));
    for (const char byte : sequence.substr(1)) {
        character = (character << 6U) | (static_cast<unsigned char>(byte) & 0x3FU);
    }
    return character;
}

QString display(std::string_view bytes, bool keepsLines) {
    const bool plain = std::ranges::all_of(bytes, [](char byte) { return byte >= 0x20 && byte < 0x7F; });
    if (plain) {
        return QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size()));
    }
    QString text;
    text.reserve(static_cast<qsizetype>(bytes.size()));
    while (!bytes.empty()) {
        const std::size_t length = sequenceLength(bytes);
        if (length == 0) {
            appendEscaped(text, static_cast<unsigned char>(bytes.front()));
            bytes.remove_prefix(1);
            continue;
        }
        const char32_t character = decoded(bytes.substr(0, length));
        const bool lineMark = character == U'\n' || character == U'\t';
        if (misleads(character) || (isControl(character) && !(keepsLines && lineMark))) {
            appendEscaped(text, character);
        } else {
            text += QChar::fromUcs4(character);
        }
        bytes.remove_prefix(length);
    }
    return text;
}

} // namespace

QString displayName(std::string_view bytes) {
    return display(bytes, false);
}

QString displayMessage(std::string_view bytes) {
    return display(bytes, true);
}

} // namespace zentrill
