#include "ui/RowNotes.h"

#include "controller/sizes/SizeTexts.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace zentrill {

namespace {

/// The row under the pointer and the one that the keyboard has reached.
constexpr std::size_t mostWishes = 2;

/// No model has such a key: theirs begin with the source.
std::string keyOf(const AppInfo& application) {
    return std::string(1, '\0') + application.name;
}

} // namespace

RowNotes::RowNotes(UninstallerViewModel& controller, const ApplicationListModel& applications,
                   const LocalModelListModel& models, QObject* parent)
    : QObject(parent), controller_(controller), applications_(applications), models_(models) {
    connect(&controller_, &UninstallerViewModel::isBusyChanged, this, &RowNotes::forget);
}

void RowNotes::wantApplication(int row) {
    const AppInfo* application = applications_.record(row);
    if (application == nullptr || !application->hasResidualData) {
        return;
    }
    want({.key = keyOf(*application),
          .start = [paths = controller_.remainingPaths(application->name)](NoteWorker& worker, Show show) {
              worker.explainRemainingData(paths, std::move(show));
          }});
}

void RowNotes::wantModel(int row) {
    if (const LocalModel* model = models_.record(row)) {
        want({.key = model->id(), .start = [model = *model](NoteWorker& worker, Show show) {
                  worker.explainModel(model, std::move(show));
              }});
    }
}

QString RowNotes::application(int row, int /*revision*/) const {
    const AppInfo* application = applications_.record(row);
    if (application == nullptr || !application->hasResidualData) {
        return {};
    }
    const QString note = known(keyOf(*application));
    return note.isEmpty() ? remainingDataNote(controller_.remainingPaths(application->name), {}) : note;
}

QString RowNotes::model(int row, int /*revision*/) const {
    const LocalModel* model = models_.record(row);
    return model == nullptr ? QString() : known(model->id());
}

void RowNotes::want(Wish wish) {
    if (controller_.isBusy() || notes_.contains(wish.key) ||
        std::ranges::find(wishes_, wish.key, &Wish::key) != wishes_.end()) {
        return;
    }
    wishes_.push_back(std::move(wish));
    if (wishes_.size() == 1) {
        startFirst();
    } else if (wishes_.size() > mostWishes) {
        wishes_.pop_front();
        startFirst();
    }
}

void RowNotes::startFirst() {
    if (wishes_.empty()) {
        return;
    }
    wishes_.front().start(controller_.notes(), [this, key = wishes_.front().key](const QString& note) {
        notes_[key] = note;
        wishes_.pop_front();
        startFirst();
        change();
    });
}

void RowNotes::forget() {
    controller_.notes().cancel();
    wishes_.clear();
    notes_.clear();
    change();
}

QString RowNotes::known(const std::string& key) const {
    const auto found = notes_.find(key);
    return found == notes_.end() ? QString() : found->second;
}

void RowNotes::change() {
    ++revision_;
    Q_EMIT revisionChanged();
}

} // namespace zentrill
