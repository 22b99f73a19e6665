#include "platform/Utf8.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace zentrill {

namespace {

/// What a leading byte promises: the length of its sequence and the bounds of the second byte, which rule
/// out overlong forms, surrogates and values above U+10FFFF.
struct Sequence {
    std::size_t length = 0;
    unsigned char lowestSecond = 0x80;
    unsigned char highestSecond = 0xBF;
};

Sequence sequenceOf(unsigned char lead) noexcept {
    if (lead < 0x80) {
        return {.length = 1};
    }
    if (lead >= 0xC2 && lead <= 0xDF) {
        return {.length = 2};
    }
    if (lead == 0xE0) {
        return {.length = 3, .lowestSecond = 0xA0};
    }
    if (lead == 0xED) {
        return {.length = 3, .highestSecond = 0x9F};
    }
    if (lead >= 0xE1 && lead <= 0xEF) {
        return {.length = 3};
    }
    if (lead == 0xF0) {
        return {.length = 4, .lowestSecond = 0x90};
    }
    if (lead == 0xF4) {
        return {.length = 4, .highestSecond = 0x8F};
    }
    if (lead >= 0xF1 && lead <= 0xF3) {
        return {.length = 4};
    }
    return {};
}

bool isContinuation(unsigned char byte) noexcept {
    return (byte & 0xC0) == 0x80;
}

/// Whether `bytes` holds nothing that contradicts `sequence`, as far as it goes.
bool agrees(std::string_view bytes, const Sequence& sequence) noexcept {
    for (std::size_t index = 1; index < std::min(bytes.size(), sequence.length); ++index) {
        const auto byte = static_cast<unsigned char>(bytes[index]);
        if (!isContinuation(byte)) {
            return false;
        }
        if (index == 1 && (byte < sequence.lowestSecond || byte > sequence.highestSecond)) {
            return false;
        }
    }
    return true;
}

std::size_t asciiPrefixLength(std::string_view bytes) noexcept {
    constexpr std::uint64_t highBits = 0x8080808080808080;
    std::size_t length = 0;
    for (std::uint64_t word = 0; bytes.size() - length >= sizeof(word); length += sizeof(word)) {
        std::memcpy(&word, bytes.data() + length, sizeof(word));
        if ((word & highBits) != 0) {
            break;
        }
    }
    return length;
}

} // namespace

bool isValidUtf8(std::string_view bytes) noexcept {
    while (!bytes.empty()) {
        bytes.remove_prefix(asciiPrefixLength(bytes));
        if (bytes.empty()) {
            break;
        }
        const Sequence sequence = sequenceOf(static_cast<unsigned char>(bytes.front()));
        if (sequence.length == 0 || sequence.length > bytes.size() || !agrees(bytes, sequence)) {
            return false;
        }
        bytes.remove_prefix(sequence.length);
    }
    return true;
}

std::size_t incompleteUtf8TailLength(std::string_view bytes) noexcept {
    for (std::size_t length = 1; length <= std::min<std::size_t>(3, bytes.size()); ++length) {
        const std::string_view tail = bytes.substr(bytes.size() - length);
        if (isContinuation(static_cast<unsigned char>(tail.front()))) {
            continue;
        }
        const Sequence sequence = sequenceOf(static_cast<unsigned char>(tail.front()));
        return sequence.length > length && agrees(tail, sequence) ? length : 0;
    }
    return 0;
}

} // namespace zentrill
