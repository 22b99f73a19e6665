#pragma once

#include <utility>

namespace zentrill {

/// Owns one file descriptor and closes it at the end of its life.
///
///     FileDescriptor directory(::openat(parent, name, O_DIRECTORY | O_CLOEXEC));
///     if (!directory)
///         return errno;
class FileDescriptor {
public:
    FileDescriptor() noexcept = default;

    /// Takes over `descriptor`; any negative value means "none".
    explicit FileDescriptor(int descriptor) noexcept : descriptor_(descriptor) {}

    FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}

    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        if (this != &other) {
            reset();
            descriptor_ = std::exchange(other.descriptor_, -1);
        }
        return *this;
    }

    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    ~FileDescriptor() { reset(); }

    [[nodiscard]] int get() const noexcept { return descriptor_; }

    [[nodiscard]] explicit operator bool() const noexcept { return descriptor_ >= 0; }

    /// Gives the descriptor up without closing it.
    [[nodiscard]] int release() noexcept { return std::exchange(descriptor_, -1); }

    /// Closes the descriptor now; `errno` is left as it was.
    void reset() noexcept;

private:
    int descriptor_ = -1;
};

} // namespace zentrill
