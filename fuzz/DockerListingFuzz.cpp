#include "docker/DockerImage.h"
#include "docker/DockerListing.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace {

/// Aborts, which the fuzzer reports as a finding.
void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

} // namespace

/// The listings are whatever a program printed: any bytes at all.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zentrill;
    const std::string_view output(reinterpret_cast<const char*>(data), size);
    const std::vector<std::string_view> lines = docker_listing::nonemptyLines(output);
    for (const std::string_view line : lines) {
        require(!line.empty() && docker_listing::trimmed(line) == line);
        require(line.data() >= output.data() && line.data() + line.size() <= output.data() + output.size());
    }

    const DockerConnection connection{.arguments = {"--context", "default"}, .displayName = "default"};
    const docker_listing::Containers containers = docker_listing::containers(output, connection);
    require(containers.records.size() + containers.unreadableCount == lines.size());
    for (const DockerRecord& record : containers.records) {
        require(!record.id.empty() && record.connection == connection);
    }

    const docker_listing::Images images = docker_listing::images(output);
    require(images.records.size() + images.malformedCount <= lines.size());
    for (const DockerImageRecord& record : images.records) {
        require(isFullImageID(record.imageID) && !record.size.empty());
        require(std::ranges::is_sorted(record.tags) &&
                std::ranges::adjacent_find(record.tags) == record.tags.end());
    }

    if (const auto used = docker_listing::usedImageIDs(output, lines.size())) {
        require(used->size() <= lines.size() && std::ranges::all_of(*used, isFullImageID));
    }
    require(!docker_listing::usedImageIDs(output, lines.size() + 1));
    return 0;
}
