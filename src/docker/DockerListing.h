#pragma once

#include "docker/DockerConnection.h"
#include "docker/DockerContainer.h"
#include "docker/DockerImageRecord.h"

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

/// Reads what the `docker` tool prints. Pure functions that take any bytes: lines cut short, of any length,
/// nested to any depth or not in UTF-8 count as unreadable; nothing is guessed.
namespace zentrill::docker_listing {

struct Containers {
    /// In the order of the listing.
    std::vector<DockerRecord> records;
    std::size_t unreadableCount = 0;
};

struct Images {
    /// In the order of their first lines; an image listed under several tags is one record.
    std::vector<DockerImageRecord> records;
    std::size_t malformedCount = 0;
};

/// Without the blanks and newlines at both ends.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// The pieces between newline characters, trimmed, without the empty ones. They point into `output`.
[[nodiscard]] std::vector<std::string_view> nonemptyLines(std::string_view output);

/// Reads one JSON object per line, as `container ls --format "{{json .}}"` prints them.
[[nodiscard]] Containers containers(std::string_view output, const DockerConnection& connection);

/// The same for `image ls --no-trunc`.
[[nodiscard]] Images images(std::string_view output);

/// The image IDs of `containerCount` containers, one per line, in lower case; nothing unless there are
/// exactly as many and each is a full ID.
[[nodiscard]] std::optional<std::set<std::string>> usedImageIDs(std::string_view output,
                                                                std::size_t containerCount);

/// How `usedImageIDs` spells an image ID: in lower case.
[[nodiscard]] std::string canonicalImageID(std::string_view imageID);

} // namespace zentrill::docker_listing
