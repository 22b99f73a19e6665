// What can be copied of the rows, and shown in a folder.

#include "ui/ContentViewState.h"
#include "ui/models/Overloaded.h"

#include <string>
#include <variant>

namespace zentrill {

QByteArray ContentViewState::applicationPath(int row) const {
    const AppInfo* application = applications_->record(row);
    return QByteArray::fromStdString(application == nullptr ? std::string()
                                                            : controller_.pathOf(application->name));
}

QByteArray ContentViewState::modelPath(int row) const {
    const LocalModel* model = models_->record(row);
    return QByteArray::fromStdString(model == nullptr ? std::string() : model->path);
}

void ContentViewState::copyApplication(int row) const {
    const AppInfo* application = applications_->record(row);
    if (application == nullptr) {
        return;
    }
    const QByteArray path = applicationPath(row);
    PathActions::copy(path.isEmpty() ? QByteArray::fromStdString(application->displayName) : path);
}

void ContentViewState::copyDockerRow(int row) const {
    const DockerRow* found = dockerRows_->record(row);
    if (found == nullptr) {
        return;
    }
    PathActions::copy(QByteArray::fromStdString(std::visit(
        Overloaded{
            [](const DockerContainer& container) { return container.name; },
            [](const DockerImage& image) { return image.tags.empty() ? image.imageID : image.displayName(); },
            [](const auto&) { return std::string(); },
        },
        *found)));
}

} // namespace zentrill
