#include "controller/UninstallerViewModel.h"

#include "catalog/ApplicationList.h"
#include "controller/DisplayText.h"
#include "controller/SystemScan.h"
#include "platform/Precondition.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <functional>
#include <unordered_map>
#include <utility>

namespace zentrill {

namespace {

/// How long the worker may take to notice that the window is closed.
constexpr std::chrono::milliseconds closingPatience{300};

/// Freeing a million log entries at once would stall the main thread.
constexpr std::size_t discardedPerTurn = 20'000;

QString displayed(const std::string& bytes) {
    return displayMessage(bytes);
}

} // namespace

UninstallerViewModel::UninstallerViewModel(std::shared_ptr<CommandExecuting> commandRunner,
                                           std::shared_ptr<const SafeDeletionEngine> deletionEngine,
                                           std::shared_ptr<const DockerExecutableLocating> dockerLocator,
                                           bool autoScan, ApplicationHooks hooks)
    : apps_(applicationList()),
      dockerStatusMessage_(QStringLiteral("Docker has not been scanned yet.")),
      mainQueue_(std::make_shared<MainQueue>(
          [this](std::vector<std::string> entries) { appendLogs(std::move(entries)); })),
      commandRunner_(std::move(commandRunner)),
      deletionEngine_(std::move(deletionEngine)),
      dockerLocator_(std::move(dockerLocator)),
      reviews_(mainQueue_, deletionEngine_),
      notes_(mainQueue_, deletionEngine_),
      selectionSizes_(mainQueue_, deletionEngine_),
      hooks_(std::move(hooks)) {
    if (autoScan) {
        scanSystem();
    }
}

UninstallerViewModel::~UninstallerViewModel() {
    static_cast<void>(shutDown());
}

QString UninstallerViewModel::operationDescription() const {
    return displayName(operationDescription_);
}

std::vector<std::string> UninstallerViewModel::remainingPaths(const std::string& name) const {
    const auto found = remainingPaths_.find(name);
    return found == remainingPaths_.end() ? std::vector<std::string>() : found->second;
}

std::string UninstallerViewModel::pathOf(const std::string& name) const {
    if (const auto installed = installedPaths_.find(name); installed != installedPaths_.end()) {
        return installed->second;
    }
    const auto remaining = remainingPaths_.find(name);
    return remaining == remainingPaths_.end() || remaining->second.empty() ? std::string()
                                                                           : remaining->second.front();
}

void UninstallerViewModel::setPreserveCredentials(bool preserve) {
    requireMainThread("setPreserveCredentials must be called on the main thread");
    assign(preserveCredentials_, preserve, &UninstallerViewModel::preserveCredentialsChanged);
}

void UninstallerViewModel::setAppSelected(const std::string& name, bool selected) {
    requireMainThread("setAppSelected must be called on the main thread");
    const auto app = std::ranges::find(apps_, name, &AppInfo::name);
    if (app == apps_.end() || app->isSelected == selected) {
        return;
    }
    app->isSelected = selected;
    Q_EMIT appsChanged();
}

void UninstallerViewModel::scanSystem() {
    if (!beginOperation("Scanning system", {.scanning = true})) {
        return;
    }
    log("Starting system scan for applications, models, and containers...");
    submit([](const OperationContext& context) { return rescan(context, std::nullopt); });
}

void UninstallerViewModel::cancelOperation() {
    requireMainThread("cancelOperation must be called on the main thread");
    if (!isBusy_) {
        return;
    }
    if (cancellationToken_ != nullptr) {
        cancellationToken_->cancel();
    }
    assign(isCancelling_, canCancelOperation_, &UninstallerViewModel::isCancellingChanged);
    log("Cancellation requested by user.");
}

void UninstallerViewModel::clearLogs() {
    requireMainThread("clearLogs must be called on the main thread");
    if (logs_.empty()) {
        return;
    }
    discard(std::exchange(logs_, {}));
    Q_EMIT logsCleared();
}

void UninstallerViewModel::dismissResultAlert() {
    requireMainThread("dismissResultAlert must be called on the main thread");
    assign(showResultAlert_, false, &UninstallerViewModel::showResultAlertChanged);
}

void UninstallerViewModel::log(const std::string& message) {
    mainQueue_->postLine(LogClock::roomFor(message));
}

bool UninstallerViewModel::shutDown() {
    requireMainThread("shutDown must be called on the main thread");
    if (!workerEnded_) {
        mainQueue_->close();
        if (hooks_.endCommands) {
            hooks_.endCommands();
        }
        cancelLooks();
        // All of them are asked to stop, even if one does not.
        const std::array ended{operationQueue_.stop(closingPatience), reviews_.stop(closingPatience),
                               notes_.stop(closingPatience), selectionSizes_.stop(closingPatience)};
        workerEnded_ = std::ranges::all_of(ended, std::identity());
    }
    return *workerEnded_;
}

void UninstallerViewModel::requireMainThread(const char* message) const {
    precondition(std::this_thread::get_id() == mainThread_, message);
}

bool UninstallerViewModel::beginOperation(const std::string& description, OperationTraits traits) {
    requireMainThread("beginOperation must be called on the main thread");
    if (isBusy_) {
        log("Ignored request while another operation is running: " + operationDescription_);
        return false;
    }
    deletionProgress_ = std::make_shared<DeletionProgress>();
    cancelLooks();
    assign(isBusy_, true, &UninstallerViewModel::isBusyChanged);
    assign(isScanning_, traits.scanning, &UninstallerViewModel::isScanningChanged);
    assign(canCancelOperation_, traits.cancellable, &UninstallerViewModel::canCancelOperationChanged);
    assign(operationDescription_, description, &UninstallerViewModel::operationDescriptionChanged);
    cancellationToken_ = std::make_shared<CancellableOperation>();
    return true;
}

void UninstallerViewModel::cancelLooks() {
    reviews_.cancel();
    notes_.cancel();
    selectionSizes_.cancel();
}

void UninstallerViewModel::endOperation() {
    assign(isScanning_, false, &UninstallerViewModel::isScanningChanged);
    assign(isBusy_, false, &UninstallerViewModel::isBusyChanged);
    assign(canCancelOperation_, false, &UninstallerViewModel::canCancelOperationChanged);
    assign(isCancelling_, false, &UninstallerViewModel::isCancellingChanged);
    assign(operationDescription_, std::string(), &UninstallerViewModel::operationDescriptionChanged);
}

void UninstallerViewModel::publishScan(ScanSnapshot snapshot, const std::optional<ResultAlert>& alert) {
    requireMainThread("publishScan must be called on the main thread");
    std::unordered_map<std::string, bool> selection;
    for (const AppInfo& app : apps_) {
        selection.emplace(app.name, app.isSelected);
    }
    for (AppInfo& app : snapshot.apps) {
        app.isSelected = app.isDetected && selection[app.name];
    }
    remainingPaths_ = std::move(snapshot.remainingPaths);
    installedPaths_ = std::move(snapshot.installedPaths);
    assign(apps_, std::move(snapshot.apps), &UninstallerViewModel::appsChanged);
    assign(localModels_, std::move(snapshot.models), &UninstallerViewModel::localModelsChanged);
    publishDocker(std::move(snapshot.docker));
    log("Scan completed: " + std::to_string(std::ranges::count_if(apps_, &AppInfo::isDetected)) +
        " applications, " + std::to_string(localModels_.size()) + " models, " +
        std::to_string(containers_.size()) + " Docker containers, and " +
        std::to_string(dockerImages_.size()) + " Docker images.");
    endOperation();
    if (alert) {
        showResult(*alert);
    }
}

void UninstallerViewModel::publishDocker(DockerAvailability availability) {
    auto* const available = std::get_if<DockerAvailability::Available>(&availability.state);
    const auto* const unavailable = std::get_if<DockerAvailability::DaemonUnavailable>(&availability.state);
    DockerAvailability::Available inventory;
    QString status = QStringLiteral("Docker CLI is not installed or is not available in PATH.");
    if (available != nullptr) {
        inventory = std::move(*available);
        status = displayed("Docker is available on connection '" + inventory.connection.displayName + "'.");
    } else if (unavailable != nullptr) {
        status = displayed("Docker is installed, but its daemon is unavailable: " + unavailable->message);
    }
    assign(containers_, std::move(inventory.containers), &UninstallerViewModel::containersChanged);
    assign(dockerImages_, std::move(inventory.images), &UninstallerViewModel::dockerImagesChanged);
    assign(dockerImageWarning_, inventory.imageWarning ? displayed(*inventory.imageWarning) : QString(),
           &UninstallerViewModel::dockerImageWarningChanged);
    assign(isDockerInstalled_, available != nullptr || unavailable != nullptr,
           &UninstallerViewModel::isDockerInstalledChanged);
    assign(dockerDaemonRunning_, available != nullptr, &UninstallerViewModel::dockerDaemonRunningChanged);
    assign(dockerStatusMessage_, std::move(status), &UninstallerViewModel::dockerStatusMessageChanged);
}

void UninstallerViewModel::showResult(const ResultAlert& alert) {
    // Set before the message, whose lines refer to them.
    resultRetainedPaths_ = alert.retainedPaths;
    assign(resultAlertTitle_, displayed(alert.title), &UninstallerViewModel::resultAlertTitleChanged);
    assign(resultAlertMessage_, displayed(alert.message), &UninstallerViewModel::resultAlertMessageChanged);
    assign(resultAlertOutcome_, alert.outcome, &UninstallerViewModel::resultAlertOutcomeChanged);
    assign(resultAlertRetainedPathCount_, qint64{alert.retainedPathCount},
           &UninstallerViewModel::resultAlertRetainedPathCountChanged);
    assign(resultAlertFreeSpace_, displayed(alert.freeSpace),
           &UninstallerViewModel::resultAlertFreeSpaceChanged);
    // Set last, so that the window opens with everything in place.
    assign(showResultAlert_, true, &UninstallerViewModel::showResultAlertChanged);
}

void UninstallerViewModel::appendLogs(std::vector<std::string> entries) {
    const auto first = static_cast<qsizetype>(logs_.size());
    for (std::string& entry : entries) {
        logClock_.stamp(entry);
        logs_.push_back(std::move(entry));
    }
    Q_EMIT logsAppended(first, static_cast<qsizetype>(entries.size()));
}

void UninstallerViewModel::discard(std::deque<std::string> entries) {
    const auto count = std::min(entries.size(), discardedPerTurn);
    entries.erase(entries.begin(), entries.begin() + static_cast<std::ptrdiff_t>(count));
    if (!entries.empty()) {
        mainQueue_->post([this, rest = std::move(entries)]() mutable { discard(std::move(rest)); });
    }
}

void UninstallerViewModel::submit(Body body) {
    // The link carries `this` to the main thread, and drops it there once the controller is gone.
    operationQueue_.submit([this, link = mainQueue_, context = operationContext(), body = std::move(body)] {
        if (context.isAbandoned()) {
            return;
        }
        if (Completion completion = body(context)) {
            link->post([this, completion = std::move(completion)] { completion(*this); });
        }
    });
}

UninstallerViewModel::Completion UninstallerViewModel::rescan(const OperationContext& context,
                                                              std::optional<ResultAlert> alert) {
    if (context.isAbandoned()) {
        return {};
    }
    return [snapshot = collectScan(context),
            alert = std::move(alert)](UninstallerViewModel& controller) mutable {
        controller.publishScan(std::move(snapshot), alert);
    };
}

template <typename Value>
void UninstallerViewModel::assign(Value& property, Value value, void (UninstallerViewModel::*changed)()) {
    if (property == value) {
        return;
    }
    property = std::move(value);
    Q_EMIT(this->*changed)();
}

} // namespace zentrill
