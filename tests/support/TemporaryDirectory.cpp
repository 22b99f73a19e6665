#include "support/TemporaryDirectory.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include <unistd.h>

namespace zentrill::test {

namespace {

std::string systemTemporaryFolder() {
    const char* folder = std::getenv("TMPDIR");
    return folder != nullptr && *folder != '\0' ? folder : "/tmp";
}

} // namespace

TemporaryDirectory::TemporaryDirectory() : TemporaryDirectory(systemTemporaryFolder()) {}

TemporaryDirectory::TemporaryDirectory(const std::string& parent) {
    std::string pattern = std::filesystem::canonical(parent).string() + "/zentrill-test-XXXXXX";
    if (::mkdtemp(pattern.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), pattern);
    }
    path_ = pattern;
}

TemporaryDirectory::~TemporaryDirectory() {
    // Tests take permissions away; give them back so that everything can go.
    std::error_code ignored;
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all, ignored);
    for (auto entry = std::filesystem::recursive_directory_iterator(
             path_, std::filesystem::directory_options::skip_permission_denied, ignored);
         !ignored && entry != std::filesystem::recursive_directory_iterator(); entry.increment(ignored)) {
        std::error_code refused;
        if (entry->symlink_status(refused).type() == std::filesystem::file_type::directory) {
            std::filesystem::permissions(entry->path(), std::filesystem::perms::owner_all, refused);
        }
    }
    std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryDirectory::path(std::string_view relative) const {
    return std::string(path_).append("/").append(relative);
}

std::string TemporaryDirectory::makeDirectory(std::string_view relative) const {
    std::string made = path(relative);
    std::filesystem::create_directories(made);
    return made;
}

std::string TemporaryDirectory::makeFile(std::string_view relative, std::string_view content) const {
    std::string made = path(relative);
    std::filesystem::create_directories(std::filesystem::path(made).parent_path());
    std::ofstream file(made, std::ios::binary);
    file << content;
    file.close();
    if (!file) {
        throw std::runtime_error("cannot write " + made);
    }
    return made;
}

std::string TemporaryDirectory::makeExecutable(std::string_view relative, std::string_view content) const {
    std::string made = makeFile(relative, content);
    std::filesystem::permissions(
        made, std::filesystem::perms::owner_all | std::filesystem::perms::group_read |
                  std::filesystem::perms::group_exec | std::filesystem::perms::others_read |
                  std::filesystem::perms::others_exec);
    return made;
}

std::string TemporaryDirectory::makeLink(std::string_view relative, const std::string& target) const {
    std::string made = path(relative);
    std::filesystem::create_directories(std::filesystem::path(made).parent_path());
    std::filesystem::create_symlink(target, made);
    return made;
}

} // namespace zentrill::test
