#pragma once

#include "deletion/DeletionDomain.h"
#include "platform/DirectoryHandle.h"

#include <condition_variable>
#include <functional>
#include <future>
#include <mutex>
#include <optional>

namespace zentrill {

/// Runs a part of a deletion on a thread that the domain holds to the item, while the caller's own thread,
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
/// A thread is made for each run, so that domains never add up. Without a domain, and where no thread is to
/// be had, everything happens on the caller's thread.
class HeldThread {
public:
    explicit HeldThread(DeletionDomain domain);

    /// Returns when `body` has come to its end; passes on what it throws.
    void run(const DirectoryHandle& item, const std::function<void()>& body);

    /// From within `body`, or outside of a run: what `question` says on the thread that called `run`. What
    /// may start processes, or change anything outside of the item, belongs in there.
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
