#pragma once

#include "deletion/DeletionDomain.h"
#include "platform/DirectoryHandle.h"

#include <condition_variable>
#include <functional>
#include <future>
#include <mutex>
#include <optional>

namespace zentrill {

/// Runs a part of a deletion on a thread that the domain holds to the item. Meanwhile the caller's thread,
/// which is never restricted, waits and answers questions.
///
///     HeldThread held(domain);
///     held.run(item, [&] {
///         removeWhatIsBelow();                                  // Held to the item.
///         if (held.ask([&] { return mayRemove(path); })) {      // Answered on the caller's thread.
///             ...
///         }
///     });
///     item goes;                                                // On the caller's thread again.
///
/// Each run has a new thread, because domains cannot be left and would add up. Without a domain, or if no
/// thread can be started, everything happens on the caller's thread.
class HeldThread {
public:
    explicit HeldThread(DeletionDomain domain);

    /// Returns when `body` has ended; passes on what it throws.
    void run(const DirectoryHandle& item, const std::function<void()>& body);

    /// Runs `question` on the thread that called `run` and returns its answer. Whatever may start processes,
    /// or change anything outside the item, must be asked this way. May be called in `body` and outside a
    /// run.
    [[nodiscard]] bool ask(const std::function<bool()>& question);

private:
    void answerUntilFinished();

    DeletionDomain domain_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::optional<std::packaged_task<bool()>> question_;
    /// Whether the body runs on another thread than the caller's.
    bool elsewhere_ = false;
    bool finished_ = false;
};

} // namespace zentrill
