#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zentrill {

/// What one output stream of a command has delivered so far. Keeps the first `limit` bytes and drops the
/// rest, so that a runaway command cannot exhaust the memory. Used by one thread.
class DataBox {
public:
    /// Far more than any of the programs prints, and little of a desktop machine's memory.
    static constexpr std::size_t defaultLimit = std::size_t{64} * 1024 * 1024;

    explicit DataBox(std::size_t limit = defaultLimit) noexcept : limit_(limit) {}

    void append(std::string_view bytes);

    struct Text {
        /// Empty if the bytes are not UTF-8. If the limit cut a character in two, its first half is dropped.
        std::string text;
        /// Whether `text` is everything that was delivered.
        bool isWhole = true;
    };

    /// Leaves the box empty.
    [[nodiscard]] Text take();

private:
    std::size_t limit_;
    std::string bytes_;
    bool cut_ = false;
};

} // namespace zentrill
