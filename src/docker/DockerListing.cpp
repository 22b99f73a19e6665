#include "docker/DockerListing.h"

#include "docker/DockerImage.h"
#include "docker/DockerJsonLine.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <utility>

namespace zentrill::docker_listing {

namespace {

constexpr std::string_view newlines = "\n\v\f\r";
constexpr std::string_view blanks = " \t\n\v\f\r";
/// What Docker writes in place of a missing repository or tag.
constexpr std::string_view none = "<none>";

std::optional<DockerRecord> container(std::string_view line, const DockerConnection& connection) {
    const std::optional<DockerJsonLine> json = DockerJsonLine::parse(line);
    if (!json) {
        return std::nullopt;
    }
    std::optional<std::string> id = json->nonemptyString("ID");
    if (!id) {
        return std::nullopt;
    }
    return DockerRecord{
        .id = std::move(*id),
        .name = json->nonemptyString("Names").value_or(""),
        .image = json->nonemptyString("Image").value_or(""),
        .status = json->nonemptyString("Status").value_or(""),
        .connection = connection,
    };
}

std::optional<DockerImageRecord> image(std::string_view line) {
    const std::optional<DockerJsonLine> json = DockerJsonLine::parse(line);
    if (!json) {
        return std::nullopt;
    }
    std::optional<std::string> id = json->nonemptyString("ID");
    const std::optional<std::string> repository = json->nonemptyString("Repository");
    const std::optional<std::string> tag = json->nonemptyString("Tag");
    std::optional<std::string> size = json->nonemptyString("Size");
    if (!id || !isFullImageID(*id) || !repository || !tag || !size) {
        return std::nullopt;
    }
    DockerImageRecord record{.imageID = std::move(*id), .tags = {}, .size = std::move(*size)};
    if (*repository != none && *tag != none) {
        record.tags.push_back(*repository + ":" + *tag);
    }
    return record;
}

void makeSortedSet(std::vector<std::string>& texts) {
    std::ranges::sort(texts);
    const auto repeated = std::ranges::unique(texts);
    texts.erase(repeated.begin(), repeated.end());
}

} // namespace

std::string_view trimmed(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(blanks);
    if (begin == std::string_view::npos) {
        return {};
    }
    return text.substr(begin, text.find_last_not_of(blanks) + 1 - begin);
}

std::vector<std::string_view> nonemptyLines(std::string_view output) {
    std::vector<std::string_view> lines;
    while (!output.empty()) {
        const std::size_t end = std::min(output.find_first_of(newlines), output.size());
        if (const std::string_view line = trimmed(output.substr(0, end)); !line.empty()) {
            lines.push_back(line);
        }
        output.remove_prefix(std::min(end + 1, output.size()));
    }
    return lines;
}

Containers containers(std::string_view output, const DockerConnection& connection) {
    Containers result;
    for (const std::string_view line : nonemptyLines(output)) {
        if (std::optional<DockerRecord> record = container(line, connection)) {
            result.records.push_back(std::move(*record));
        } else {
            ++result.unreadableCount;
        }
    }
    return result;
}

Images images(std::string_view output) {
    Images result;
    std::map<std::string, std::size_t> places;
    for (const std::string_view line : nonemptyLines(output)) {
        std::optional<DockerImageRecord> record = image(line);
        if (!record) {
            ++result.malformedCount;
            continue;
        }
        const auto [place, isNew] = places.emplace(record->imageID, result.records.size());
        if (isNew) {
            result.records.push_back(std::move(*record));
        } else {
            std::ranges::move(record->tags, std::back_inserter(result.records[place->second].tags));
        }
    }
    for (DockerImageRecord& record : result.records) {
        makeSortedSet(record.tags);
    }
    return result;
}

std::optional<std::set<std::string>> usedImageIDs(std::string_view output, std::size_t containerCount) {
    const std::vector<std::string_view> lines = nonemptyLines(output);
    if (lines.size() != containerCount || !std::ranges::all_of(lines, isFullImageID)) {
        return std::nullopt;
    }
    std::set<std::string> ids;
    for (const std::string_view line : lines) {
        ids.insert(canonicalImageID(line));
    }
    return ids;
}

std::string canonicalImageID(std::string_view imageID) {
    std::string canonical(imageID);
    std::ranges::transform(canonical, canonical.begin(), [](char character) {
        return character >= 'A' && character <= 'F' ? static_cast<char>(character - 'A' + 'a') : character;
    });
    return canonical;
}

} // namespace zentrill::docker_listing
