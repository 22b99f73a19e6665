#pragma once

#include "controller/UninstallerViewModel.h"
#include "ui/ConfirmationState.h"
#include "ui/InputGuard.h"
#include "ui/ListStripState.h"
#include "ui/PathActions.h"
#include "ui/ProgressState.h"
#include "ui/ResultState.h"
#include "ui/ReviewState.h"
#include "ui/RowNotes.h"
#include "ui/SelectionSizeState.h"
#include "ui/Shortcuts.h"
#include "ui/models/FoldedLogModel.h"
#include "ui/models/LineSearch.h"
#include "ui/models/LineSelection.h"
#include "ui/models/LogListModel.h"
#include "ui/models/RowModels.h"

#include <QByteArray>
#include <QObject>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <memory>

namespace zentrill {

/// What the main view shows beyond the controller's own properties: the chosen pane, the lists as models,
/// and every text that depends on a decision. QML binds to it and calls it; it holds no cleanup logic.
class ContentViewState : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by ContentView")
    Q_PROPERTY(zentrill::UninstallerViewModel* controller READ controller CONSTANT FINAL)
    Q_PROPERTY(QString selectedTab READ selectedTab WRITE setSelectedTab NOTIFY selectedTabChanged FINAL)
    Q_PROPERTY(int selectedRow READ selectedRow NOTIFY selectedTabChanged FINAL)
    Q_PROPERTY(QString selectedPane READ selectedPane NOTIFY selectedTabChanged FINAL)
    Q_PROPERTY(QString title READ title NOTIFY selectedTabChanged FINAL)
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY selectedTabChanged FINAL)
    Q_PROPERTY(QAbstractItemModel* applications READ applications CONSTANT FINAL)
    Q_PROPERTY(QAbstractItemModel* models READ models CONSTANT FINAL)
    Q_PROPERTY(QAbstractItemModel* dockerRows READ dockerRows CONSTANT FINAL)
    Q_PROPERTY(zentrill::ListStripState* modelStrip READ modelStrip CONSTANT FINAL)
    Q_PROPERTY(zentrill::ListStripState* dockerStrip READ dockerStrip CONSTANT FINAL)
    Q_PROPERTY(zentrill::FoldedLogModel* logs READ logs CONSTANT FINAL)
    Q_PROPERTY(zentrill::LineSelection* logSelection READ logSelection CONSTANT FINAL)
    Q_PROPERTY(zentrill::LineSearch* logSearch READ logSearch CONSTANT FINAL)
    Q_PROPERTY(QString logCountText READ logCountText NOTIFY logCountChanged FINAL)
    Q_PROPERTY(zentrill::ConfirmationState* confirmation READ confirmation CONSTANT FINAL)
    Q_PROPERTY(zentrill::ProgressState* progress READ progress CONSTANT FINAL)
    Q_PROPERTY(zentrill::ResultState* result READ result CONSTANT FINAL)
    Q_PROPERTY(zentrill::ReviewState* review READ review CONSTANT FINAL)
    Q_PROPERTY(zentrill::RowNotes* rowNotes READ rowNotes CONSTANT FINAL)
    Q_PROPERTY(zentrill::SelectionSizeState* selectionSize READ selectionSize CONSTANT FINAL)
    Q_PROPERTY(zentrill::PathActions* paths READ paths CONSTANT FINAL)
    Q_PROPERTY(zentrill::InputGuard* input READ input CONSTANT FINAL)
    Q_PROPERTY(bool modalShown READ modalShown NOTIFY modalChanged FINAL)
    Q_PROPERTY(bool resultShown READ resultShown NOTIFY modalChanged FINAL)
    Q_PROPERTY(bool acceptsRequests READ acceptsRequests NOTIFY modalChanged FINAL)
    Q_PROPERTY(bool canReviewSelection READ canReviewSelection NOTIFY canUninstallChanged FINAL)
    Q_PROPERTY(bool canUninstall READ canUninstall NOTIFY canUninstallChanged FINAL)
    Q_PROPERTY(
        bool shortcutsShown READ shortcutsShown WRITE setShortcutsShown NOTIFY shortcutsShownChanged FINAL)
    Q_PROPERTY(bool windowShown READ windowShown NOTIFY windowShownChanged FINAL)
    Q_PROPERTY(bool nothingFound READ nothingFound NOTIFY nothingFoundChanged FINAL)
    Q_PROPERTY(QString selectionCount READ selectionCount NOTIFY selectionChanged FINAL)
    Q_PROPERTY(QString shieldCaption READ shieldCaption NOTIFY shieldCaptionChanged FINAL)
    Q_PROPERTY(QString dockerNoticeIcon READ dockerNoticeIcon NOTIFY dockerStateChanged FINAL)
    Q_PROPERTY(QString dockerNoticeHeading READ dockerNoticeHeading NOTIFY dockerStateChanged FINAL)

public:
    /// `controller` outlives this object.
    explicit ContentViewState(UninstallerViewModel& controller, QObject* parent = nullptr);

    [[nodiscard]] UninstallerViewModel* controller() const { return &controller_; }

    /// "apps", "models", "containers" or "console".
    [[nodiscard]] QString selectedTab() const { return selectedTab_; }

    void setSelectedTab(const QString& tab);

    /// The row of the chosen tab in the sidebar, from 0.
    [[nodiscard]] int selectedRow() const;

    /// Chooses the tab of that row in the sidebar; rows beyond the first and the last are ignored.
    Q_INVOKABLE void selectRow(int row);

    /// The pane that is shown for the chosen tab: the console's for a tab that is none of the four.
    [[nodiscard]] QString selectedPane() const;
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString subtitle() const;

    [[nodiscard]] QAbstractItemModel* applications() const { return applications_.get(); }

    [[nodiscard]] QAbstractItemModel* models() const { return models_.get(); }

    [[nodiscard]] QAbstractItemModel* dockerRows() const { return dockerRows_.get(); }

    [[nodiscard]] ListStripState* modelStrip() { return &modelStrip_; }

    [[nodiscard]] ListStripState* dockerStrip() { return &dockerStrip_; }

    /// The log as the console shows it; selection and search work on its lines.
    [[nodiscard]] FoldedLogModel* logs() { return &foldedLogs_; }

    [[nodiscard]] LineSelection* logSelection() const { return logSelection_.get(); }

    [[nodiscard]] LineSearch* logSearch() { return &logSearch_; }

    [[nodiscard]] ConfirmationState* confirmation() { return &confirmation_; }

    [[nodiscard]] ProgressState* progress() { return &progress_; }

    [[nodiscard]] ResultState* result() { return &result_; }

    [[nodiscard]] ReviewState* review() { return &review_; }

    [[nodiscard]] RowNotes* rowNotes() { return &rowNotes_; }

    [[nodiscard]] SelectionSizeState* selectionSize() { return &selectionSize_; }

    [[nodiscard]] PathActions* paths() { return &paths_; }

    [[nodiscard]] InputGuard* input() { return &input_; }

    /// Whether a confirmation or a result is shown over the window.
    [[nodiscard]] bool modalShown() const;

    /// Whether that is a result.
    [[nodiscard]] bool resultShown() const { return controller_.showResultAlert(); }

    /// Whether a destructive request would be accepted now.
    [[nodiscard]] bool acceptsRequests() const { return confirmation_.canPresent() && !review_.isShown(); }

    /// Whether the selected applications can be reviewed.
    [[nodiscard]] bool canReviewSelection() const { return canUninstall(); }

    /// The same for the selected applications; at least one must be selected.
    [[nodiscard]] bool canUninstall() const;

    /// Whether the window's first frame is on the screen. The panes are built after it, so that the window is
    /// there as early as possible.
    [[nodiscard]] bool windowShown() const { return windowShown_; }

    void setWindowShown();

    /// Whether the list of all shortcuts is shown over the window; a modal replaces it.
    [[nodiscard]] bool shortcutsShown() const { return shortcutsShown_; }

    void setShortcutsShown(bool shown);

    /// Does what a shortcut asks for; does nothing below a modal.
    void perform(ShortcutAction action);

    /// "1 line", "12 lines".
    [[nodiscard]] QString logCountText() const;

    /// Whether a scan has found no application.
    [[nodiscard]] bool nothingFound() const { return nothingFound_; }

    /// How many applications are selected, in words: "2 selected".
    [[nodiscard]] QString selectionCount() const;
    [[nodiscard]] QString shieldCaption() const;

    /// Icon and heading of the notice that replaces the Docker lists; empty while these can be shown.
    [[nodiscard]] QString dockerNoticeIcon() const;
    [[nodiscard]] QString dockerNoticeHeading() const;

    /// The nearest row of the Docker list from `row` on, in steps of 1 or -1, at which the keyboard stops; -1
    /// if there is none.
    Q_INVOKABLE [[nodiscard]] int dockerStop(int row, int step) const;

    /// Selects or deselects the application of that row.
    Q_INVOKABLE void toggleApplication(int row);

    /// Selects every application that was found, or none if all of them are selected.
    void toggleAllApplications();

    /// Each opens the confirmation of one destructive action on the records as they are now. A row that does
    /// not exist or has something else opens nothing.
    Q_INVOKABLE void requestUninstall();
    Q_INVOKABLE void requestModelDeletion(int row);
    Q_INVOKABLE void requestContainerRemoval(int row);
    Q_INVOKABLE void requestImageRemoval(int row);
    Q_INVOKABLE void requestSelfUninstall();

    /// Each opens the review of what a request would remove. A row that does not exist or has something else
    /// opens nothing.
    Q_INVOKABLE void reviewSelection();
    Q_INVOKABLE void reviewApplication(int row);
    Q_INVOKABLE void reviewModel(int row);
    Q_INVOKABLE void reviewDockerRow(int row);

    /// Whether there is something to review in that row now.
    Q_INVOKABLE [[nodiscard]] bool canReviewApplication(int row) const;

    /// The path of the application or the model of that row, in bytes; empty, never null, if it is not known.
    Q_INVOKABLE [[nodiscard]] QByteArray applicationPath(int row) const;
    Q_INVOKABLE [[nodiscard]] QByteArray modelPath(int row) const;

    /// Each copies what the row stands for to the clipboard: its path or, without one, its name.
    Q_INVOKABLE void copyApplication(int row) const;

    Q_INVOKABLE void copyModel(int row) const { PathActions::copy(modelPath(row)); }

    Q_INVOKABLE void copyDockerRow(int row) const;

    /// Stops a running container at once: nothing is lost, so no code is asked for.
    Q_INVOKABLE void stopContainer(int row);

    /// A file of the views could not be loaded.
    Q_INVOKABLE void reportFailedPart(const QUrl& file) { Q_EMIT partFailed(file); }

Q_SIGNALS:
    void partFailed(const QUrl& file);
    void selectedTabChanged();
    void logCountChanged();
    void nothingFoundChanged();
    void windowShownChanged();
    void shortcutsShownChanged();
    /// A shortcut chose the pane: it takes the focus.
    void paneEntered();
    /// A shortcut asks the pane that is shown for its search field.
    void findRequested();
    void closeRequested();
    void modalChanged();
    void canUninstallChanged();
    void selectionChanged();
    void shieldCaptionChanged();
    void dockerStateChanged();

private:
    void connectToController();
    void showApplications();
    void noteFindings();
    void showModels();
    void showDocker();
    /// The surface that takes the input now.
    [[nodiscard]] InputGuard::Surface surface() const;
    void showModal();
    void present(PendingConfirmation pending);
    void openReview(ReviewSubject subject);
    void enterPane(int row);

    UninstallerViewModel& controller_;
    ConfirmationState confirmation_;
    ProgressState progress_;
    ResultState result_;
    ReviewState review_;
    PathActions paths_;
    InputGuard input_;
    std::unique_ptr<ApplicationListModel> applications_;
    std::unique_ptr<LocalModelListModel> models_;
    std::unique_ptr<DockerListModel> dockerRows_;
    RowNotes rowNotes_;
    SelectionSizeState selectionSize_;
    ListStripState modelStrip_;
    ListStripState dockerStrip_;
    std::unique_ptr<LogListModel> logs_;
    FoldedLogModel foldedLogs_;
    std::unique_ptr<LineSelection> logSelection_;
    LineSearch logSearch_;
    QString selectedTab_;
    bool nothingFound_ = false;
    bool windowShown_ = false;
    bool shortcutsShown_ = false;
};

} // namespace zentrill
