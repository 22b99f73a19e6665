#include "platform/UnicodeText.h"

#include <array>
#include <cstddef>
#include <string_view>
#include <utility>

namespace zentrill {

namespace {

using namespace std::string_view_literals;

/// How characters are laid out in bytes.
struct Form {
    std::string_view mark;
    /// Bytes of a code unit.
    std::size_t unitSize = 1;
    bool isBigEndian = false;
};

/// UTF-32 comes before UTF-16, because its mark begins with that of UTF-16.
constexpr std::array forms{
    Form{.mark = "\xEF\xBB\xBF"sv},
    Form{.mark = "\0\0\xFE\xFF"sv, .unitSize = 4, .isBigEndian = true},
    Form{.mark = "\xFF\xFE\0\0"sv, .unitSize = 4},
    Form{.mark = "\xFE\xFF"sv, .unitSize = 2, .isBigEndian = true},
    Form{.mark = "\xFF\xFE"sv, .unitSize = 2},
};

constexpr bool isHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

constexpr bool isLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

void appendUtf8(std::string& text, char32_t character) {
    const auto append = [&text](char32_t byte) { text += static_cast<char>(byte); };
    const auto appendContinuation = [&](unsigned shift) { append(0x80U | (character >> shift & 0x3FU)); };
    if (character < 0x80) {
        append(character);
    } else if (character < 0x800) {
        append(0xC0U | character >> 6U);
        appendContinuation(0);
    } else if (character < 0x10000) {
        append(0xE0U | character >> 12U);
        appendContinuation(6);
        appendContinuation(0);
    } else {
        append(0xF0U | character >> 18U);
        appendContinuation(12);
        appendContinuation(6);
        appendContinuation(0);
    }
}

/// The code units of a text, one after the other.
class Units {
public:
    Units(std::string_view bytes, const Form& form) : bytes_(bytes), form_(form) {}

    [[nodiscard]] bool atEnd() const { return bytes_.empty(); }

    /// The next one; there must be one.
    char32_t next() {
        char32_t unit = 0;
        for (std::size_t index = 0; index < form_.unitSize; ++index) {
            const std::size_t place = form_.isBigEndian ? index : form_.unitSize - 1 - index;
            unit = unit << 8U | static_cast<unsigned char>(bytes_[place]);
        }
        bytes_.remove_prefix(form_.unitSize);
        return unit;
    }

private:
    std::string_view bytes_;
    Form form_;
};

std::optional<std::string> utf8Of(std::string_view bytes, const Form& form) {
    if (bytes.size() % form.unitSize != 0) {
        return std::nullopt;
    }
    std::string text;
    text.reserve(bytes.size() / form.unitSize);
    for (Units units(bytes, form); !units.atEnd();) {
        char32_t character = units.next();
        if (form.unitSize == 2 && isHighSurrogate(character) && !units.atEnd()) {
            const char32_t low = units.next();
            if (!isLowSurrogate(low)) {
                return std::nullopt;
            }
            character = 0x10000 + ((character & 0x3FFU) << 10U | (low & 0x3FFU));
        }
        if (isHighSurrogate(character) || isLowSurrogate(character) || character > 0x10FFFF) {
            return std::nullopt;
        }
        appendUtf8(text, character);
    }
    return text;
}

} // namespace

std::optional<std::string> withoutByteOrderMark(std::string content) {
    for (const Form& form : forms) {
        if (!content.starts_with(form.mark)) {
            continue;
        }
        if (form.unitSize == 1) {
            content.erase(0, form.mark.size());
            return content;
        }
        return utf8Of(std::string_view(content).substr(form.mark.size()), form);
    }
    return content;
}

} // namespace zentrill
