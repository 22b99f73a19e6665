#pragma once

#include "catalog/AppInfo.h"
#include "controller/ApplicationHooks.h"
#include "controller/CancellableOperation.h"
#include "controller/LogClock.h"
#include "controller/MainQueue.h"
#include "controller/OperationContext.h"
#include "controller/OperationQueue.h"
#include "controller/ResultAlert.h"
#include "controller/ScanSnapshot.h"
#include "controller/review/ReviewWorker.h"
#include "controller/sizes/NoteWorker.h"
#include "controller/sizes/SelectionSizeWorker.h"
#include "deletion/DeletionProgress.h"
#include "deletion/SafeDeletionEngine.h"
#include "docker/DockerContainer.h"
#include "docker/DockerExecutableLocating.h"
#include "docker/DockerImage.h"
#include "models/LocalModel.h"
#include "process/CommandExecuting.h"

#include <QObject>
#include <QString>

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace zentrill {

/// The one object behind the window: owns everything that the views show, runs one operation at a time on a
/// background worker and publishes what came of it.
///
/// Belongs to the thread that makes it, the main thread; only `log` may be called from elsewhere. Strings of
/// the lists are bytes; those of the properties are decoded as UTF-8 for display.
class UninstallerViewModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isScanning READ isScanning NOTIFY isScanningChanged)
    Q_PROPERTY(bool isBusy READ isBusy NOTIFY isBusyChanged)
    Q_PROPERTY(QString operationDescription READ operationDescription NOTIFY operationDescriptionChanged)
    Q_PROPERTY(bool preserveCredentials READ preserveCredentials WRITE setPreserveCredentials NOTIFY
                   preserveCredentialsChanged)
    Q_PROPERTY(bool showResultAlert READ showResultAlert NOTIFY showResultAlertChanged)
    Q_PROPERTY(QString resultAlertTitle READ resultAlertTitle NOTIFY resultAlertTitleChanged)
    Q_PROPERTY(QString resultAlertMessage READ resultAlertMessage NOTIFY resultAlertMessageChanged)
    Q_PROPERTY(
        zentrill::ResultOutcome resultAlertOutcome READ resultAlertOutcome NOTIFY resultAlertOutcomeChanged)
    Q_PROPERTY(qint64 resultAlertRetainedPathCount READ resultAlertRetainedPathCount NOTIFY
                   resultAlertRetainedPathCountChanged)
    Q_PROPERTY(QString resultAlertFreeSpace READ resultAlertFreeSpace NOTIFY resultAlertFreeSpaceChanged)
    Q_PROPERTY(bool isDockerInstalled READ isDockerInstalled NOTIFY isDockerInstalledChanged)
    Q_PROPERTY(bool dockerDaemonRunning READ dockerDaemonRunning NOTIFY dockerDaemonRunningChanged)
    Q_PROPERTY(QString dockerStatusMessage READ dockerStatusMessage NOTIFY dockerStatusMessageChanged)
    Q_PROPERTY(QString dockerImageWarning READ dockerImageWarning NOTIFY dockerImageWarningChanged)
    Q_PROPERTY(bool canCancelOperation READ canCancelOperation NOTIFY canCancelOperationChanged)
    Q_PROPERTY(bool isCancelling READ isCancelling NOTIFY isCancellingChanged)

public:
    /// Lists every catalog application, undetected and unselected; with `autoScan` a scan is under way when
    /// the constructor returns. A QCoreApplication must exist.
    UninstallerViewModel(std::shared_ptr<CommandExecuting> commandRunner,
                         std::shared_ptr<const SafeDeletionEngine> deletionEngine,
                         std::shared_ptr<const DockerExecutableLocating> dockerLocator, bool autoScan,
                         ApplicationHooks hooks = ApplicationHooks::ofThisProgram());
    ~UninstallerViewModel() override;

    UninstallerViewModel(const UninstallerViewModel&) = delete;
    UninstallerViewModel& operator=(const UninstallerViewModel&) = delete;
    UninstallerViewModel(UninstallerViewModel&&) = delete;
    UninstallerViewModel& operator=(UninstallerViewModel&&) = delete;

    [[nodiscard]] const std::vector<AppInfo>& apps() const { return apps_; }

    [[nodiscard]] const std::vector<LocalModel>& localModels() const { return localModels_; }

    [[nodiscard]] const std::vector<DockerContainer>& containers() const { return containers_; }

    [[nodiscard]] const std::vector<DockerImage>& dockerImages() const { return dockerImages_; }

    /// "[HH:mm:ss] message", oldest first, unbounded.
    [[nodiscard]] const std::deque<std::string>& logs() const { return logs_; }

    [[nodiscard]] bool isScanning() const { return isScanning_; }

    [[nodiscard]] bool isBusy() const { return isBusy_; }

    /// What runs, on one line; empty while nothing does.
    [[nodiscard]] QString operationDescription() const;

    [[nodiscard]] bool preserveCredentials() const { return preserveCredentials_; }

    [[nodiscard]] bool showResultAlert() const { return showResultAlert_; }

    [[nodiscard]] QString resultAlertTitle() const { return resultAlertTitle_; }

    [[nodiscard]] QString resultAlertMessage() const { return resultAlertMessage_; }

    [[nodiscard]] ResultOutcome resultAlertOutcome() const { return resultAlertOutcome_; }

    [[nodiscard]] qint64 resultAlertRetainedPathCount() const { return resultAlertRetainedPathCount_; }

    /// "Free space: 41.2 GB → 46.8 GB"; empty where that is not known.
    [[nodiscard]] QString resultAlertFreeSpace() const { return resultAlertFreeSpace_; }

    [[nodiscard]] bool isDockerInstalled() const { return isDockerInstalled_; }

    [[nodiscard]] bool dockerDaemonRunning() const { return dockerDaemonRunning_; }

    [[nodiscard]] QString dockerStatusMessage() const { return dockerStatusMessage_; }

    /// Null while the last scan had nothing to warn of.
    [[nodiscard]] QString dockerImageWarning() const { return dockerImageWarning_; }

    [[nodiscard]] bool canCancelOperation() const { return canCancelOperation_; }

    /// Computes what a removal would do. An operation that begins ends that.
    [[nodiscard]] ReviewWorker& reviews() { return reviews_; }

    /// How far the deletions of the present or last operation have come.
    [[nodiscard]] DeletionProgress& deletionProgress() const { return *deletionProgress_; }

    /// Compute what a row's tooltip adds and how much of a selection would go. An operation that begins ends
    /// both.
    [[nodiscard]] NoteWorker& notes() { return notes_; }

    [[nodiscard]] SelectionSizeWorker& selectionSizes() { return selectionSizes_; }

    /// Whether the running operation was asked to stop and has not stopped yet.
    [[nodiscard]] bool isCancelling() const { return isCancelling_; }

    /// What the last scan found of an application that is no longer installed, by `AppInfo::name`, as
    /// absolute paths; empty for other applications.
    [[nodiscard]] std::vector<std::string> remainingPaths(const std::string& name) const;

    /// Where an application is, by `AppInfo::name`, as an absolute path: the first executable or bundle that
    /// the last scan found or, without any, the first of `remainingPaths`. Empty if there is neither.
    [[nodiscard]] std::string pathOf(const std::string& name) const;

    /// The paths that the shown result says were left in place, in its order.
    [[nodiscard]] const std::vector<std::string>& resultRetainedPaths() const { return resultRetainedPaths_; }

    void setPreserveCredentials(bool preserve);

    /// Selects or deselects the application of that `AppInfo::name`; an unknown name changes nothing.
    void setAppSelected(const std::string& name, bool selected);

    Q_INVOKABLE void scanSystem();

    /// Asks the running operation to stop between two steps; does nothing while idle.
    Q_INVOKABLE void cancelOperation();

    /// Uninstalls the detected applications among the selected ones with the current `preserveCredentials`.
    Q_INVOKABLE void uninstallSelectedApps();

    /// Uninstalls exactly `apps`, whatever the lists say by now.
    void uninstallAppsFromConfirmation(const std::vector<AppInfo>& apps, bool preserveCredentials);

    void deleteModel(const LocalModel& model);
    void stopContainer(const DockerContainer& container);

    /// A container that the scan saw running is stopped first.
    void removeContainer(const DockerContainer& container);
    void removeDockerImage(const DockerImage& image);

    /// Removes the program and its data; on success the process ends while this object lives.
    Q_INVOKABLE void performSelfUninstall();

    Q_INVOKABLE void clearLogs();
    Q_INVOKABLE void dismissResultAlert();

    /// Appends a line to the activity log. May be called on any thread; returns at once, the line appears
    /// when the main thread comes to it.
    void log(const std::string& message);

    /// Cannot be undone: cuts the link through which work reaches this object, ends running commands and
    /// gives the worker a moment to finish. Returns whether it did; if not, the process must end without
    /// waiting for it (`std::_Exit`). Further calls return the same.
    bool shutDown();

Q_SIGNALS:
    void appsChanged();
    void localModelsChanged();
    void containersChanged();
    void dockerImagesChanged();
    /// `count` entries from index `first` on are new, at the end of the list.
    void logsAppended(qsizetype first, qsizetype count);
    void logsCleared();
    void isScanningChanged();
    void isBusyChanged();
    void operationDescriptionChanged();
    void preserveCredentialsChanged();
    void showResultAlertChanged();
    void resultAlertTitleChanged();
    void resultAlertMessageChanged();
    void resultAlertOutcomeChanged();
    void resultAlertRetainedPathCountChanged();
    void resultAlertFreeSpaceChanged();
    void isDockerInstalledChanged();
    void dockerDaemonRunningChanged();
    void dockerStatusMessageChanged();
    void dockerImageWarningChanged();
    void canCancelOperationChanged();
    void isCancellingChanged();

private:
    /// What an operation does to the controller at its end, on the main thread.
    using Completion = std::function<void(UninstallerViewModel&)>;
    /// What it does before that, on the worker. It returns an empty completion if the controller is gone.
    using Body = std::function<Completion(const OperationContext&)>;
    using AlertingBody = std::function<ResultAlert(const OperationContext&)>;

    /// Stops the program with `message` when called off the main thread.
    void requireMainThread(const char* message) const;

    /// What the window has to know of an operation that begins.
    struct OperationTraits {
        bool scanning = false;
        bool cancellable = false;
    };

    bool beginOperation(const std::string& description, OperationTraits traits);
    void endOperation();
    /// Ends the background work beside the operations.
    void cancelLooks();
    void publishScan(ScanSnapshot snapshot, const std::optional<ResultAlert>& alert);
    void publishDocker(DockerAvailability availability);
    void showResult(const ResultAlert& alert);
    /// Stamps `entries` (`LogClock::roomFor`) and appends them.
    void appendLogs(std::vector<std::string> entries);
    /// Frees `entries` a part at a time.
    void discard(std::deque<std::string> entries);

    [[nodiscard]] OperationContext operationContext() const;
    /// Has the worker run `body` with copies of what it may use, and then the main thread its completion.
    /// Neither happens once this object is shut down.
    void submit(Body body);
    void submitThenRescan(AlertingBody body);
    /// Scans on the calling thread; the completion publishes the findings and the alert together.
    [[nodiscard]] static Completion rescan(const OperationContext& context, std::optional<ResultAlert> alert);

    template <typename Value>
    void assign(Value& property, Value value, void (UninstallerViewModel::*changed)());

    std::vector<AppInfo> apps_;
    RemainingPaths remainingPaths_;
    InstalledPaths installedPaths_;
    std::vector<LocalModel> localModels_;
    std::vector<DockerContainer> containers_;
    std::vector<DockerImage> dockerImages_;
    std::deque<std::string> logs_;
    bool isScanning_ = false;
    bool isBusy_ = false;
    std::string operationDescription_;
    bool preserveCredentials_ = true;
    bool showResultAlert_ = false;
    QString resultAlertTitle_;
    QString resultAlertMessage_;
    ResultOutcome resultAlertOutcome_ = ResultOutcome::unknown;
    qint64 resultAlertRetainedPathCount_ = 0;
    std::vector<std::string> resultRetainedPaths_;
    QString resultAlertFreeSpace_;
    bool isDockerInstalled_ = false;
    bool dockerDaemonRunning_ = false;
    QString dockerStatusMessage_;
    QString dockerImageWarning_;
    bool canCancelOperation_ = false;
    bool isCancelling_ = false;

    const std::thread::id mainThread_ = std::this_thread::get_id();
    LogClock logClock_;
    std::shared_ptr<MainQueue> mainQueue_;
    OperationQueue operationQueue_;
    std::shared_ptr<CommandExecuting> commandRunner_;
    std::shared_ptr<const SafeDeletionEngine> deletionEngine_;
    std::shared_ptr<const DockerExecutableLocating> dockerLocator_;
    ReviewWorker reviews_;
    NoteWorker notes_;
    SelectionSizeWorker selectionSizes_;
    std::shared_ptr<CancellableOperation> cancellationToken_;
    std::shared_ptr<DeletionProgress> deletionProgress_ = std::make_shared<DeletionProgress>();
    ApplicationHooks hooks_;
    std::optional<bool> workerEnded_;
};

} // namespace zentrill
