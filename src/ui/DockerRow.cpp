#include "ui/DockerRow.h"

namespace zentrill {

namespace {

std::string usageText(DockerImageUsage usage) {
    switch (usage) {
    case DockerImageUsage::unused:
        return "Not used by a container";
    case DockerImageUsage::inUse:
        return "In use";
    case DockerImageUsage::unknown:
        break;
    }
    return "Usage unknown";
}

DockerRow remark(DockerRow::Kind kind, std::string recordID, std::string text) {
    return {.kind = kind, .recordID = std::move(recordID), .text = std::move(text)};
}

} // namespace

std::string DockerRow::id() const {
    return std::to_string(static_cast<int>(kind)) + '\0' + recordID;
}

std::vector<DockerRow> dockerRows(const std::vector<DockerContainer>& containers,
                                  const std::vector<DockerImage>& images,
                                  const std::optional<std::string>& warning) {
    using Kind = DockerRow::Kind;
    std::vector<DockerRow> rows;
    rows.reserve(containers.size() + images.size() + 6);
    rows.push_back(
        remark(Kind::heading, "containers", "Containers (" + std::to_string(containers.size()) + ")"));
    for (const DockerContainer& container : containers) {
        rows.push_back({.kind = Kind::container,
                        .recordID = container.id,
                        .text = container.name,
                        .detail = container.image,
                        .status = container.status,
                        .isActive = container.isRunning()});
    }
    if (containers.empty()) {
        rows.push_back(remark(Kind::empty, "containers", "No Docker containers detected."));
    }
    rows.push_back(remark(Kind::heading, "images", "Images (" + std::to_string(images.size()) + ")"));
    rows.push_back(remark(Kind::notice, "sizes",
                          "Image sizes are virtual and layers may be shared. Their sum is not guaranteed "
                          "reclaimable disk space."));
    if (warning) {
        rows.push_back(remark(Kind::warning, "images", *warning));
    }
    for (const DockerImage& image : images) {
        rows.push_back({.kind = Kind::image,
                        .recordID = image.imageID,
                        .text = image.displayName(),
                        .detail = image.shortID(),
                        .status = image.size,
                        .usage = usageText(image.usage),
                        .isActive = image.usage == DockerImageUsage::inUse});
    }
    if (images.empty()) {
        rows.push_back(remark(Kind::empty, "images", "No Docker images detected."));
    }
    return rows;
}

} // namespace zentrill
