// icns FOLDER FILE: puts the pictures FOLDER/SIZE.png into a Mac's icon file.

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>

namespace {

struct Picture {
    std::string_view type;
    std::string_view size; // In pixels.
};

// The types that hold a PNG: the sizes from 16 to 512 points for screens of twice the resolution, and those
// from 128 points on for others, where what is smaller is made from what is larger.
constexpr std::array<Picture, 8> pictures{{
    {.type = "ic11", .size = "32"},
    {.type = "ic12", .size = "64"},
    {.type = "ic07", .size = "128"},
    {.type = "ic13", .size = "256"},
    {.type = "ic08", .size = "256"},
    {.type = "ic14", .size = "512"},
    {.type = "ic09", .size = "512"},
    {.type = "ic10", .size = "1024"},
}};

/// Such a file is a block, and so is each picture in it: a type of four letters, the length of the whole
/// block in four bytes, the first of which counts most, and what it holds.
std::string block(std::string_view type, const std::string& content) {
    constexpr std::size_t headLength = 8;
    std::string result(type);
    const auto length = static_cast<std::uint32_t>(content.size() + headLength);
    for (const unsigned shift : {24U, 16U, 8U, 0U}) {
        result.push_back(static_cast<char>(static_cast<unsigned char>(length >> shift)));
    }
    return result + content;
}

} // namespace

int main(int argc, char* argv[]) {
    if (argc != 3) {
        static_cast<void>(std::fputs("Usage: icns FOLDER FILE\n", stderr));
        return EXIT_FAILURE;
    }
    std::string content;
    for (const Picture& picture : pictures) {
        const std::filesystem::path path =
            (std::filesystem::path(argv[1]) / picture.size).replace_extension(".png");
        std::ostringstream png;
        if (!(png << std::ifstream(path, std::ios::binary).rdbuf())) {
            static_cast<void>(std::fprintf(stderr, "icns: %s cannot be read\n", path.c_str()));
            return EXIT_FAILURE;
        }
        content += block(picture.type, png.str());
    }
    std::ofstream file(argv[2], std::ios::binary);
    file << block("icns", content);
    file.close();
    if (!file) {
        static_cast<void>(std::fprintf(stderr, "icns: %s cannot be written\n", argv[2]));
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
