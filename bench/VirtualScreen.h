#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include <sys/types.h>

namespace zentrill::bench {

/// A virtual X server whose picture lies in memory shared with this process, so that looking at a pixel costs
/// neither side anything. Ends with the object.
class VirtualScreen {
public:
    /// Starts `Xvfb` and waits for it; ends the benchmark when it cannot be started. 1280 × 900 pixels. The
    /// server needs /tmp: a benchmark with a screen confines itself only after this.
    VirtualScreen();
    ~VirtualScreen();

    VirtualScreen(const VirtualScreen&) = delete;
    VirtualScreen& operator=(const VirtualScreen&) = delete;
    VirtualScreen(VirtualScreen&&) = delete;
    VirtualScreen& operator=(VirtualScreen&&) = delete;

    /// ":1", for DISPLAY.
    [[nodiscard]] const std::string& display() const { return display_; }

    /// The 32 bits of a pixel; 0 is the bare root window.
    [[nodiscard]] std::uint32_t pixel(std::size_t x, std::size_t y) const;

private:
    std::string display_;
    pid_t server_ = -1;
    const volatile unsigned char* picture_ = nullptr;
    std::size_t pixelsOffset_ = 0;
    std::size_t bytesPerLine_ = 0;
};

} // namespace zentrill::bench
