#include "ui/models/DockerRow.h"

#include "ui/models/Overloaded.h"

#include <algorithm>
#include <iterator>

namespace zentrill {

QString DockerHeading::text() const {
    switch (section) {
    case Section::containers:
        return QStringLiteral("Containers (%1)").arg(count);
    case Section::images:
        break;
    }
    return QStringLiteral("Images (%1)").arg(count);
}

std::string dockerRowKey(const DockerRow& row) {
    const std::string own = std::visit(
        Overloaded{
            [](const DockerHeading& heading) { return std::to_string(static_cast<int>(heading.section)); },
            [](const DockerRemark& remark) { return std::to_string(static_cast<int>(remark.kind)); },
            [](const DockerContainer& container) { return container.id; },
            [](const DockerImage& image) { return image.imageID; },
        },
        row);
    return std::to_string(row.index()) + '\0' + own;
}

bool isDockerStop(const DockerRow& row) {
    return std::holds_alternative<DockerContainer>(row) || std::holds_alternative<DockerImage>(row);
}

std::vector<DockerRow> dockerRows(const std::vector<DockerContainer>& containers,
                                  const std::vector<DockerImage>& images, const QString& warning,
                                  const Arrangement& arrangement) {
    using Section = DockerHeading::Section;
    using Kind = DockerRemark::Kind;
    std::vector<DockerRow> rows;
    rows.reserve(containers.size() + images.size() + 6);
    rows.emplace_back(DockerHeading{.section = Section::containers, .count = containers.size()});
    std::ranges::move(arranged(containers, arrangement), std::back_inserter(rows));
    if (containers.empty()) {
        rows.emplace_back(DockerRemark{.kind = Kind::noContainers,
                                       .text = QStringLiteral("No Docker containers detected.")});
    }
    rows.emplace_back(DockerHeading{.section = Section::images, .count = images.size()});
    rows.emplace_back(
        DockerRemark{.kind = Kind::notice,
                     .text = QStringLiteral("Image sizes are virtual and layers may be shared. Their sum is "
                                            "not guaranteed reclaimable disk space.")});
    if (!warning.isNull()) {
        rows.emplace_back(DockerRemark{.kind = Kind::warning, .text = warning});
    }
    std::ranges::move(arranged(images, arrangement), std::back_inserter(rows));
    if (images.empty()) {
        rows.emplace_back(
            DockerRemark{.kind = Kind::noImages, .text = QStringLiteral("No Docker images detected.")});
    }
    return rows;
}

} // namespace zentrill
