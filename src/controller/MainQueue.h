#pragma once

#include "platform/WakePipe.h"

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <variant>
#include <vector>

class QSocketNotifier;

namespace zentrill {

/// The mailbox through which any thread reaches the main thread, and the weak link between the work and its
/// owner: after `close`, everything that still waits or comes later is dropped.
///
///     auto mailbox = std::make_shared<MainQueue>([](std::vector<std::string> lines) { … });
///     mailbox->post([this] { … });    // on any thread
///     mailbox->close();               // on the main thread, before `this` goes
///
/// Tasks and log lines are handled strictly in the order in which they came. No call into Qt is made off
/// the main thread: the wake-up is a pipe that the event loop watches. Held by `shared_ptr`, so that a task
/// may let go of the mailbox it came from.
class MainQueue : public std::enable_shared_from_this<MainQueue> {
public:
    using Task = std::function<void()>;
    /// Consecutive log lines, at least one.
    using LineSink = std::function<void(std::vector<std::string> lines)>;

    /// How long one turn of the event loop may take before other events have theirs. A task is never divided.
    static constexpr std::chrono::milliseconds turnLimit{8};

    /// To be made on the main thread, once there is a QCoreApplication.
    explicit MainQueue(LineSink sink);
    /// May be destroyed on any thread, after `close`.
    ~MainQueue();

    MainQueue(const MainQueue&) = delete;
    MainQueue& operator=(const MainQueue&) = delete;
    MainQueue(MainQueue&&) = delete;
    MainQueue& operator=(MainQueue&&) = delete;

    /// From any thread: has `task` run on the main thread, unless the mailbox is closed first.
    void post(Task task);

    /// From any thread: hands one log line to the sink, unless the mailbox is closed first.
    void postLine(std::string line);

    [[nodiscard]] bool isOpen() const;

    /// On the main thread; a task of this mailbox may call it.
    void close();

private:
    using Item = std::variant<std::string, Task>;

    void enqueue(Item item);
    void drain();
    void takeIncoming();
    void sleepUnlessMoreWaits();
    std::vector<std::string> takeLines();

    WakePipe wakePipe_;
    mutable std::mutex mutex_;
    std::deque<Item> incoming_;
    bool open_ = true;
    bool wakePending_ = false;

    // Used by the main thread alone.
    LineSink sink_;
    std::deque<Item> draining_;
    bool isDraining_ = false;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace zentrill
