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

/// What the tooltips of rows add to the rows, found out when a row is pointed at or reached; an operation
/// that begins makes it forget everything.
class RowNotes : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by ContentViewState")
    /// Another number for other notes.
    Q_PROPERTY(int revision READ revision NOTIFY revisionChanged FINAL)

public:
    /// All three outlive this object.
    RowNotes(UninstallerViewModel& controller, const ApplicationListModel& applications,
             const LocalModelListModel& models, QObject* parent = nullptr);

    [[nodiscard]] int revision() const { return revision_; }

    /// Has the note of a row found out, unless it is known or something runs.
    Q_INVOKABLE void wantApplication(int row);
    Q_INVOKABLE void wantModel(int row);

    /// What remains of the tool of that row: the paths at once, their sizes when they are known. Empty where
    /// nothing does. A view that names the revision learns of another note.
    Q_INVOKABLE [[nodiscard]] QString application(int row, int revision = 0) const;

    /// What the deletion of that row's model frees, where its size does not say it.
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
    /// The first one is being found out.
    std::deque<Wish> wishes_;
    int revision_ = 0;
};

} // namespace zentrill
