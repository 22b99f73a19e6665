#include "deletion/HeldThread.h"

#include "platform/WorkerThread.h"

#include <system_error>
#include <thread>
#include <utility>

namespace zentrill {

HeldThread::HeldThread(DeletionDomain domain) : domain_(std::move(domain)) {}

void HeldThread::run(const DirectoryHandle& item, const std::function<void()>& body) {
    if (!domain_.enter) {
        body();
        return;
    }
    std::packaged_task<void()> task([&] {
        beginWorkerThread("deletion");
        (void)domain_.enter(item); // If that fails, only the walk's own care is left.
        body();
    });
    std::future<void> outcome = task.get_future();
    elsewhere_ = true;
    finished_ = false;
    std::thread thread;
    try {
        thread = std::thread([&] {
            task();
            const std::lock_guard lock(mutex_);
            finished_ = true;
            changed_.notify_one();
        });
    } catch (const std::system_error&) {
        elsewhere_ = false;
        body();
        return;
    }
    answerUntilFinished();
    thread.join();
    elsewhere_ = false;
    outcome.get();
}

bool HeldThread::ask(const std::function<bool()>& question) {
    if (!elsewhere_) {
        return question();
    }
    std::packaged_task<bool()> task(question);
    std::future<bool> answer = task.get_future();
    {
        const std::lock_guard lock(mutex_);
        question_ = std::move(task);
        changed_.notify_one();
    }
    return answer.get();
}

void HeldThread::answerUntilFinished() {
    std::unique_lock lock(mutex_);
    while (true) {
        changed_.wait(lock, [this] { return finished_ || question_; });
        if (!question_) {
            return;
        }
        std::packaged_task<bool()> question = std::move(*question_);
        question_.reset();
        lock.unlock();
        question();
        lock.lock();
    }
}

} // namespace zentrill
