// What can be reviewed before it is removed.

#include "ui/ContentViewState.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <variant>

namespace zentrill {

void ContentViewState::reviewSelection() {
    std::vector<AppInfo> tools;
    std::ranges::copy_if(controller_.apps(), std::back_inserter(tools),
                         [](const AppInfo& app) { return app.isSelected && app.isDetected; });
    if (!tools.empty()) {
        openReview(std::move(tools));
    }
}

void ContentViewState::reviewApplication(int row) {
    if (canReviewApplication(row)) {
        openReview(std::vector{*applications_->record(row)});
    }
}

bool ContentViewState::canReviewApplication(int row) const {
    const AppInfo* application = applications_->record(row);
    return application != nullptr && application->isDetected && acceptsRequests();
}

void ContentViewState::reviewModel(int row) {
    if (const LocalModel* model = models_->record(row)) {
        openReview(*model);
    }
}

void ContentViewState::reviewDockerRow(int row) {
    const DockerRow* found = dockerRows_->record(row);
    if (found == nullptr) {
        return;
    }
    if (const auto* container = std::get_if<DockerContainer>(found)) {
        openReview(*container);
    } else if (const auto* image = std::get_if<DockerImage>(found)) {
        openReview(*image);
    }
}

void ContentViewState::openReview(ReviewSubject subject) {
    if (acceptsRequests()) {
        review_.open(std::move(subject));
    }
}

} // namespace zentrill
