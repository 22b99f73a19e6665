#include "controller/MainQueue.h"

#include "platform/Precondition.h"

#include <QSocketNotifier>

#include <utility>

namespace zentrill {

namespace {

/// How many log lines go to the sink at once: few enough to stay far below a turn's limit.
constexpr std::size_t longestBatch = 4096;

} // namespace

MainQueue::MainQueue(LineSink sink)
    : sink_(std::move(sink)),
      notifier_(std::make_unique<QSocketNotifier>(wakePipe_.descriptor(), QSocketNotifier::Read)) {
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { drain(); });
}

MainQueue::~MainQueue() {
    precondition(!isOpen(), "a mailbox was dropped without being closed");
}

void MainQueue::post(Task task) {
    enqueue(std::move(task));
}

void MainQueue::postLine(std::string line) {
    enqueue(std::move(line));
}

bool MainQueue::isOpen() const {
    const std::lock_guard guard(mutex_);
    return open_;
}

void MainQueue::close() {
    std::deque<Item> dropped;
    {
        const std::lock_guard guard(mutex_);
        open_ = false;
        dropped.swap(incoming_);
    }
    draining_.clear();
    if (notifier_ == nullptr) {
        return;
    }
    notifier_->setEnabled(false);
    if (isDraining_) {
        notifier_.release()->deleteLater(); // It is the sender of the call that leads here.
    } else {
        notifier_.reset();
    }
}

void MainQueue::enqueue(Item item) {
    const std::lock_guard guard(mutex_);
    if (!open_) {
        return;
    }
    incoming_.push_back(std::move(item));
    if (!std::exchange(wakePending_, true)) {
        wakePipe_.wake();
    }
}

void MainQueue::drain() {
    const auto self = shared_from_this();
    const auto start = std::chrono::steady_clock::now();
    takeIncoming();
    isDraining_ = true;
    while (notifier_ != nullptr && !draining_.empty()) {
        if (Task* const task = std::get_if<Task>(&draining_.front())) {
            const Task current = std::move(*task);
            draining_.pop_front();
            current();
        } else {
            sink_(takeLines());
        }
        if (std::chrono::steady_clock::now() - start >= turnLimit) {
            break;
        }
    }
    isDraining_ = false;
    sleepUnlessMoreWaits();
}

// The main thread never waits for the lock: a thread that holds it may itself be waiting for a processor.
// While the pipe is readable the next turn of the event loop comes at once, so a turn may be skipped.

void MainQueue::takeIncoming() {
    if (!draining_.empty()) {
        return;
    }
    const std::unique_lock lock(mutex_, std::try_to_lock);
    if (lock) {
        draining_.swap(incoming_);
    }
}

void MainQueue::sleepUnlessMoreWaits() {
    if (!draining_.empty()) {
        return;
    }
    const std::unique_lock lock(mutex_, std::try_to_lock);
    if (lock && incoming_.empty()) {
        wakePipe_.reset();
        wakePending_ = false;
    }
}

std::vector<std::string> MainQueue::takeLines() {
    std::vector<std::string> lines;
    while (lines.size() < longestBatch && !draining_.empty()) {
        auto* const line = std::get_if<std::string>(&draining_.front());
        if (line == nullptr) {
            break;
        }
        lines.push_back(std::move(*line));
        draining_.pop_front();
    }
    return lines;
}

} // namespace zentrill
