#include "VirtualScreen.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <thread>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zentrill::bench {

namespace {

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "VirtualScreen: %s: %s\n", what, std::strerror(errno));
    std::exit(2);
}

/// The numbers of an X window dump's header, which are big-endian, by their place in it.
std::uint32_t headerField(const volatile unsigned char* dump, std::size_t index) {
    const volatile unsigned char* bytes = dump + 4 * index;
    return (std::uint32_t{bytes[0]} << 24) | (std::uint32_t{bytes[1]} << 16) |
           (std::uint32_t{bytes[2]} << 8) | bytes[3];
}

constexpr std::size_t headerSizeField = 0;
constexpr std::size_t bytesPerLineField = 12;
constexpr std::size_t colourCountField = 19;
constexpr std::size_t colourEntrySize = 12;

} // namespace

VirtualScreen::VirtualScreen() {
    std::string folder = (std::filesystem::temp_directory_path() / "zentrill-screen-XXXXXX").string();
    if (::mkdtemp(folder.data()) == nullptr) {
        fail("mkdtemp");
    }
    std::array<int, 2> number{};
    if (::pipe(number.data()) != 0) {
        fail("pipe");
    }
    server_ = ::fork();
    if (server_ < 0) {
        fail("fork");
    }
    if (server_ == 0) {
        ::close(number[0]);
        const std::string descriptor = std::to_string(number[1]);
        ::close(STDERR_FILENO);
        ::open("/dev/null", O_WRONLY);
        ::execlp("Xvfb", "Xvfb", "-displayfd", descriptor.c_str(), "-screen", "0", "1280x900x24", "-nolisten",
                 "tcp", "-noreset", "-fbdir", folder.c_str(), nullptr);
        ::_exit(127);
    }
    ::close(number[1]);
    // The whole line: the server gives up when its newline finds nobody who reads it.
    std::string text;
    for (char character = 0; character != '\n';) {
        if (::read(number[0], &character, 1) != 1) {
            fail("Xvfb did not start");
        }
        text += character;
    }
    ::close(number[0]);
    display_.append(1, ':').append(std::to_string(std::atoi(text.c_str())));

    const std::string file = folder + "/Xvfb_screen0";
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status{};
    if (descriptor < 0 || ::fstat(descriptor, &status) != 0) {
        fail("the screen's file");
    }
    void* mapped =
        ::mmap(nullptr, static_cast<std::size_t>(status.st_size), PROT_READ, MAP_SHARED, descriptor, 0);
    ::close(descriptor);
    if (mapped == MAP_FAILED) {
        fail("mmap");
    }
    picture_ = static_cast<const volatile unsigned char*>(mapped);
    pixelsOffset_ =
        headerField(picture_, headerSizeField) + colourEntrySize * headerField(picture_, colourCountField);
    bytesPerLine_ = headerField(picture_, bytesPerLineField);
    // Both sides have the file open, and who confines itself later cannot remove it any more.
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
}

VirtualScreen::~VirtualScreen() {
    ::kill(server_, SIGTERM);
    ::waitpid(server_, nullptr, 0);
}

std::uint32_t VirtualScreen::pixel(std::size_t x, std::size_t y) const {
    const volatile unsigned char* at = picture_ + pixelsOffset_ + y * bytesPerLine_ + 4 * x;
    return std::uint32_t{at[0]} | (std::uint32_t{at[1]} << 8) | (std::uint32_t{at[2]} << 16);
}

} // namespace zentrill::bench
