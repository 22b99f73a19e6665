#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>

namespace zentrill {

/// How far deletions have come, told while they go on: their threads write, and any thread reads.
///
///     auto progress = std::make_shared<DeletionProgress>();
///     engine.tellingTo(progress).deleteItem(path, options);    // on the worker
///     progress->removedCount();                                // on another thread
///
/// It costs the deletion next to nothing. Each walk counts in a place of its own, and the path at hand is
/// made into a string only after somebody has asked for it.
class DeletionProgress {
public:
    using Counter = std::atomic<std::uint64_t>;

    /// Items removed so far: files, links and folders.
    [[nodiscard]] std::uint64_t removedCount() const noexcept;

    /// What a deletion was at when this was asked the time before, as reports call it; empty where none runs
    /// or none has come to an item since.
    [[nodiscard]] std::string path();

    /// Where one walk counts what it removes. Two walks may get the same place.
    [[nodiscard]] Counter& counter() noexcept;

    [[nodiscard]] bool wantsPath() const noexcept { return wantsPath_.load(std::memory_order_relaxed); }

    void setPath(std::string path);

private:
    static constexpr std::size_t places = 16;

    /// Apart from the others, so that threads do not wait for each other's.
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
