#include "ui/ContentViewState.h"

#include "controller/DisplayText.h"
#include "ui/models/ListSummary.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace zentrill {

namespace {

struct Tab {
    QLatin1String name;
    QLatin1String title;
    QLatin1String subtitle;
};

constexpr std::array tabs{
    Tab{QLatin1String("apps"), QLatin1String("Applications"),
        QLatin1String("Select tools for removal. Review before confirming.")},
    Tab{QLatin1String("models"), QLatin1String("Clean Large Local Models"),
        QLatin1String("Free up gigabytes by deleting local LLM weights.")},
    Tab{QLatin1String("containers"), QLatin1String("Manage Docker"),
        QLatin1String("Inspect containers and remove individual Docker images safely.")},
    Tab{QLatin1String("console"), QLatin1String("Execution Console Logs"),
        QLatin1String("View a real-time log of background processes.")},
};

/// The row of the tab; that of the console, the last one, for an unknown tab.
std::size_t rowOf(const QString& tab) {
    for (std::size_t row = 0; row < tabs.size(); ++row) {
        if (tab == tabs.at(row).name) {
            return row;
        }
    }
    return tabs.size() - 1;
}

/// The record of that row, or nothing if the row is of another kind.
template <typename Record>
const Record* recordIn(const DockerListModel& rows, int row) {
    const DockerRow* found = rows.record(row);
    return found == nullptr ? nullptr : std::get_if<Record>(found);
}

} // namespace

ContentViewState::ContentViewState(UninstallerViewModel& controller, QObject* parent)
    : QObject(parent),
      controller_(controller),
      confirmation_(controller),
      progress_(controller),
      result_(controller),
      review_(controller),
      paths_(controller),
      applications_(makeApplicationListModel()),
      models_(makeLocalModelListModel()),
      dockerRows_(makeDockerListModel()),
      rowNotes_(controller, *applications_, *models_),
      selectionSize_(controller),
      logs_(std::make_unique<LogListModel>(controller)),
      foldedLogs_(*logs_),
      logSelection_(std::make_unique<LineSelection>(*logs_)),
      logSearch_(*logs_, *logSelection_),
      selectedTab_(tabs.front().name) {
    connectToController();
    showApplications();
    showModels();
    showDocker();
}

void ContentViewState::setSelectedTab(const QString& tab) {
    if (tab == selectedTab_) {
        return;
    }
    selectedTab_ = tab;
    Q_EMIT selectedTabChanged();
}

int ContentViewState::selectedRow() const {
    return static_cast<int>(rowOf(selectedTab_));
}

void ContentViewState::selectRow(int row) {
    setSelectedTab(
        tabs[static_cast<std::size_t>(std::clamp(row, 0, static_cast<int>(tabs.size()) - 1))].name);
}

QString ContentViewState::selectedPane() const {
    return tabs[rowOf(selectedTab_)].name;
}

QString ContentViewState::title() const {
    return tabs[rowOf(selectedTab_)].title;
}

QString ContentViewState::subtitle() const {
    return tabs[rowOf(selectedTab_)].subtitle;
}

bool ContentViewState::modalShown() const {
    return confirmation_.isPending() || resultShown();
}

bool ContentViewState::canUninstall() const {
    return acceptsRequests() && std::ranges::any_of(controller_.apps(), &AppInfo::isSelected);
}

void ContentViewState::setWindowShown() {
    if (windowShown_) {
        return;
    }
    windowShown_ = true;
    Q_EMIT windowShownChanged();
}

QString ContentViewState::logCountText() const {
    const int count = logs_->rowCount();
    return count == 1 ? QStringLiteral("1 line") : QStringLiteral("%1 lines").arg(count);
}

QString ContentViewState::selectionCount() const {
    return QStringLiteral("%1 selected").arg(std::ranges::count_if(controller_.apps(), &AppInfo::isSelected));
}

QString ContentViewState::shieldCaption() const {
    return controller_.preserveCredentials()
               ? QStringLiteral("ON · retains recognized credentials and uncertain data for review.")
               : QStringLiteral("OFF · selected targets, including nested credentials, may be removed.");
}

QString ContentViewState::dockerNoticeIcon() const {
    if (!controller_.isDockerInstalled()) {
        return QStringLiteral("shippingbox.and.arrow.backward");
    }
    return controller_.dockerDaemonRunning() ? QString() : QStringLiteral("exclamationmark.triangle");
}

QString ContentViewState::dockerNoticeHeading() const {
    if (!controller_.isDockerInstalled()) {
        return QStringLiteral("Docker CLI Not Found");
    }
    return controller_.dockerDaemonRunning() ? QString() : QStringLiteral("Docker Daemon Unavailable");
}

int ContentViewState::dockerStop(int row, int step) const {
    const DockerRow* found = dockerRows_->record(row);
    while (found != nullptr && !isDockerStop(*found)) {
        row += step < 0 ? -1 : 1;
        found = dockerRows_->record(row);
    }
    return found == nullptr ? -1 : row;
}

void ContentViewState::toggleApplication(int row) {
    const AppInfo* application = applications_->record(row);
    if (application != nullptr && application->isDetected) {
        controller_.setAppSelected(application->name, !application->isSelected);
    }
}

/// No confirmation opens below a review.
void ContentViewState::present(PendingConfirmation pending) {
    if (acceptsRequests()) {
        confirmation_.presentConfirmation(std::move(pending));
    }
}

void ContentViewState::requestUninstall() {
    PendingConfirmation::Apps pending{.preserveCredentials = controller_.preserveCredentials()};
    std::ranges::copy_if(controller_.apps(), std::back_inserter(pending.apps),
                         [](const AppInfo& app) { return app.isSelected && app.isDetected; });
    if (!pending.apps.empty()) {
        present({std::move(pending)});
    }
}

void ContentViewState::requestModelDeletion(int row) {
    if (const LocalModel* model = models_->record(row)) {
        present({*model});
    }
}

void ContentViewState::requestContainerRemoval(int row) {
    if (const auto* container = recordIn<DockerContainer>(*dockerRows_, row)) {
        present({*container});
    }
}

void ContentViewState::requestImageRemoval(int row) {
    if (const auto* image = recordIn<DockerImage>(*dockerRows_, row)) {
        present({*image});
    }
}

void ContentViewState::requestSelfUninstall() {
    present({PendingConfirmation::SelfUninstall{}});
}

void ContentViewState::stopContainer(int row) {
    if (review_.isShown()) {
        return;
    }
    if (const auto* container = recordIn<DockerContainer>(*dockerRows_, row)) {
        controller_.stopContainer(*container);
    }
}

void ContentViewState::connectToController() {
    using Controller = UninstallerViewModel;
    connect(&controller_, &Controller::appsChanged, this, &ContentViewState::showApplications);
    // The end of an operation brings what its scan has found; the next one begins with that.
    connect(&controller_, &Controller::isBusyChanged, this, &ContentViewState::noteFindings);
    connect(&controller_, &Controller::localModelsChanged, this, &ContentViewState::showModels);
    connect(&modelStrip_, &ListStripState::arrangementChanged, this, &ContentViewState::showModels);
    connect(&dockerStrip_, &ListStripState::arrangementChanged, this, &ContentViewState::showDocker);
    connect(&controller_, &Controller::containersChanged, this, &ContentViewState::showDocker);
    connect(&controller_, &Controller::dockerImagesChanged, this, &ContentViewState::showDocker);
    connect(&controller_, &Controller::dockerImageWarningChanged, this, &ContentViewState::showDocker);
    connect(&controller_, &Controller::isDockerInstalledChanged, this, &ContentViewState::dockerStateChanged);
    connect(&controller_, &Controller::dockerDaemonRunningChanged, this,
            &ContentViewState::dockerStateChanged);
    connect(&controller_, &Controller::preserveCredentialsChanged, this,
            &ContentViewState::shieldCaptionChanged);
    connect(&controller_, &Controller::isBusyChanged, this, &ContentViewState::showModal);
    connect(&controller_, &Controller::showResultAlertChanged, this, &ContentViewState::showModal);
    connect(&confirmation_, &ConfirmationState::pendingChanged, this, &ContentViewState::showModal);
    connect(&review_, &ReviewState::shownChanged, this, &ContentViewState::showModal);
    connect(this, &ContentViewState::modalChanged, this, &ContentViewState::canUninstallChanged);
    connect(this, &ContentViewState::selectionChanged, this, &ContentViewState::canUninstallChanged);
    connect(logs_.get(), &QAbstractItemModel::rowsInserted, this, &ContentViewState::logCountChanged);
    connect(logs_.get(), &QAbstractItemModel::modelReset, this, &ContentViewState::logCountChanged);
}

void ContentViewState::showApplications() {
    applications_->setRecords(controller_.apps());
    Q_EMIT selectionChanged();
}

void ContentViewState::noteFindings() {
    // While something runs, the text stays.
    const bool nothing =
        controller_.isBusy() ? nothingFound_ : std::ranges::none_of(controller_.apps(), &AppInfo::isDetected);
    if (nothing != nothingFound_) {
        nothingFound_ = nothing;
        Q_EMIT nothingFoundChanged();
    }
}

InputGuard::Surface ContentViewState::surface() const {
    if (resultShown()) {
        return InputGuard::Surface::result;
    }
    if (confirmation_.isPending()) {
        return InputGuard::Surface::confirmation;
    }
    return review_.isShown() ? InputGuard::Surface::review : InputGuard::Surface::window;
}

void ContentViewState::showModal() {
    // Before the views show it, because they ask at once whether it can have been seen.
    input_.setSurface(surface());
    if (modalShown() || review_.isShown()) {
        setShortcutsShown(false);
    }
    Q_EMIT modalChanged();
}

void ContentViewState::showModels() {
    const std::vector<LocalModel>& all = controller_.localModels();
    models_->setRecords(arranged(all, modelStrip_.arrangement()));
    modelStrip_.setSummary(modelTotals(all), modelTotalsBySource(all), models_->records().size(), all.size());
}

void ContentViewState::showDocker() {
    const std::vector<DockerContainer>& containers = controller_.containers();
    const std::vector<DockerImage>& images = controller_.dockerImages();
    dockerRows_->setRecords(zentrill::dockerRows(containers, images, controller_.dockerImageWarning(),
                                                 dockerStrip_.arrangement()));
    const auto shown = static_cast<std::size_t>(std::ranges::count_if(dockerRows_->records(), isDockerStop));
    dockerStrip_.setSummary(dockerTotals(containers.size(), images.size()), {}, shown,
                            containers.size() + images.size());
}

} // namespace zentrill
