#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>

namespace zentrill {

/// How far deletions have come while they run: their threads write it, and any thread may read it.
///
///     auto progress = std::make_shared<DeletionProgress>();
///     engine.tellingTo(progress).deleteItem(path, options);    // on the worker
///     progress->removedCount();                                // on another thread
///
/// It costs the deletion almost nothing. Each walk has its own counter, and a path is made into a string only
/// after somebody has asked for it.
class DeletionProgress {
public:
    using Counter = std::atomic<std::uint64_t>;

    /// Items removed so far: files, links and folders.
    [[nodiscard]] std::uint64_t removedCount() const noexcept;

    /// The path, as in reports, of an item that a deletion has come to since the last call; empty if no
    /// deletion runs or none has come to another item. Asking has the next one noted.
    [[nodiscard]] std::string path();

    /// The counter of one walk. Two walks may share one.
    [[nodiscard]] Counter& counter() noexcept;

    [[nodiscard]] bool wantsPath() const noexcept { return wantsPath_.load(std::memory_order_relaxed); }

    void setPath(std::string path);

private:
    static constexpr std::size_t places = 16;

    /// On a cache line of its own, so that threads do not slow each other down.
    struct alignas(64) Place {
        Counter removed{0};
    };

    std::array<Place, places> places_;
    std::atomic<std::size_t> walks_{0};
    std::atomic<bool> wantsPath_{true};
    std::mutex mutex_;
    std::string path_;
};

} // namespace zentrill
