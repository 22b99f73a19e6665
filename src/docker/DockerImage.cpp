#include "docker/DockerImage.h"

#include "platform/HashCombiner.h"

#include <algorithm>

namespace zentrill {

namespace {

constexpr std::string_view digestPrefix = "sha256:";
constexpr std::size_t digestDigits = 64;
constexpr std::size_t shortDigits = 12;

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

bool isHexadecimal(char character) {
    return isDigit(character) || (character >= 'a' && character <= 'f') ||
           (character >= 'A' && character <= 'F');
}

} // namespace

std::string_view rawValue(DockerImageUsage usage) noexcept {
    switch (usage) {
    case DockerImageUsage::unused:
        return "unused";
    case DockerImageUsage::inUse:
        return "inUse";
    case DockerImageUsage::unknown:
        break;
    }
    return "unknown";
}

std::string DockerImage::displayName() const {
    if (tags.empty()) {
        return "Untagged image";
    }
    std::string joined = tags.front();
    for (std::size_t index = 1; index < tags.size(); ++index) {
        joined.append(", ").append(tags[index]);
    }
    return joined;
}

std::optional<double> DockerImage::sizeBytes() const {
    // Not every standard library can read fractions independently of the locale.
    double number = 0;
    double place = 1;
    bool isFraction = false;
    std::size_t end = 0;
    for (; end < size.size() && (isDigit(size[end]) || (size[end] == '.' && !isFraction)); ++end) {
        if (size[end] == '.') {
            isFraction = true;
            continue;
        }
        number = number * 10 + (size[end] - '0');
        place *= isFraction ? 10 : 1;
    }
    if (end == 0) {
        return std::nullopt;
    }
    number /= place;
    const std::string_view text = std::string_view(size).substr(end);
    double factor = 1;
    for (const std::string_view name : {"B", "kB", "MB", "GB", "TB", "PB"}) {
        if (text == name) {
            return number * factor;
        }
        factor *= 1000;
    }
    return std::nullopt;
}

std::string DockerImage::shortID() const {
    const std::string_view id(imageID);
    return std::string(
        (id.starts_with(digestPrefix) ? id.substr(digestPrefix.size()) : id).substr(0, shortDigits));
}

bool isFullImageID(std::string_view imageID) noexcept {
    return imageID.starts_with(digestPrefix) && imageID.size() == digestPrefix.size() + digestDigits &&
           std::all_of(imageID.begin() + digestPrefix.size(), imageID.end(), isHexadecimal);
}

} // namespace zentrill

std::size_t std::hash<zentrill::DockerImage>::operator()(const zentrill::DockerImage& image) const {
    return zentrill::HashCombiner()
        .add(image.imageID)
        .add(image.tags)
        .add(image.size)
        .add(image.usage)
        .add(image.connection)
        .value();
}
