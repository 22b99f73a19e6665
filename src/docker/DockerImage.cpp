#include "docker/DockerImage.h"

#include "platform/HashCombiner.h"

#include <algorithm>

namespace zentrill {

namespace {

constexpr std::string_view digestPrefix = "sha256:";
constexpr std::size_t digestDigits = 64;
constexpr std::size_t shortDigits = 12;

bool isHexadecimal(char character) {
    return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'f') ||
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
