#pragma once

#include "controller/UninstallerViewModel.h"
#include "ui/models/RowModels.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <deque>
#include <functional>
#include <string>
#include <unordered_map>

namespace zentrill {

/// What the tooltips of rows add to the rows, found out when the pointer or the keyboard comes to a row. An
/// operation that begins discards everything.
class RowNotes : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by ContentViewState")
    /// Changes whenever a note does.
    Q_PROPERTY(int revision READ revision NOTIFY revisionChanged FINAL)

public:
    /// All three outlive this object.
    RowNotes(UninstallerViewModel& controller, const ApplicationListModel& applications,
             const LocalModelListModel& models, QObject* parent = nullptr);

    [[nodiscard]] int revision() const { return revision_; }

    /// Starts to find out the note of a row, unless it is known or an operation runs.
    Q_INVOKABLE void wantApplication(int row);
    Q_INVOKABLE void wantModel(int row);

    /// What remains of the tool of that row: the paths at once, their sizes when they are known; empty if
    /// nothing remains. A view that binds to the revision learns of changes.
    Q_INVOKABLE [[nodiscard]] QString application(int row, int revision = 0) const;

    /// What the deletion of that row's model frees, if that differs from its size.
    Q_INVOKABLE [[nodiscard]] QString model(int row, int revision = 0) const;

Q_SIGNALS:
    void revisionChanged();

private:
    using Show = NoteWorker::Show;

    struct Wish {
        std::string key;
        std::function<void(NoteWorker& worker, Show show)> start;
    };

    void want(Wish wish);
    void startFirst();
    void forget();
    [[nodiscard]] QString known(const std::string& key) const;
    void change();

    UninstallerViewModel& controller_;
    const ApplicationListModel& applications_;
    const LocalModelListModel& models_;
    std::unordered_map<std::string, QString> notes_;
    /// The first one is being worked on.
    std::deque<Wish> wishes_;
    int revision_ = 0;
};

} // namespace zentrill
