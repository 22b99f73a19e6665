#include "truth/RandomTree.h"

#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zentrill::test {

namespace {

constexpr std::size_t itemLimit = 40;

const std::vector<std::string>& credentialNames() {
    static const std::vector<std::string> names{
        ".env",         "auth.json",    "oauth_creds.json", "credentials.json",
        "credentials",  "keys.txt",     "api_key",          "api-key",
        "token",        "access_token", "refresh_token",    ".ssh",
        ".gnupg",       "id.key",       "a.token",          "server.lic",
        "AUTH.JSON",    ".SSH",         "Token.KEY",        "x.Lic",
        "API_\u212AEY", "id.\u212Aey"};
    return names;
}

const std::vector<std::string>& innocentNames() {
    static const std::vector<std::string> names{
        "cache.bin", "auth.json.bak", "my-auth.json", "tokens", "env", "key",  ".sshd", "new\nline",
        "-rf",       "\"'",           "\xff\xfe",     " ",      "...", "a: b", "*",     "(at somewhere)"};
    return names;
}

} // namespace

RandomTree::RandomTree(Random& random, std::string top, std::string outside)
    : random_(random), top_(std::move(top)), outside_(std::move(outside)), items_{top_}, folders_{top_} {
    fill(top_, 0);
}

std::string RandomTree::randomName() {
    const std::size_t kind = random_.below(100);
    if (kind < 12) {
        return random_.pick(credentialNames());
    }
    if (kind < 30) {
        return random_.pick(innocentNames());
    }
    if (kind < 31) {
        return std::string(255 - random_.below(3), 'n');
    }
    return std::string("n").append(std::to_string(random_.below(1000)));
}

void RandomTree::fill(const std::string& folder, int depth) {
    const std::size_t count = random_.below(7);
    for (std::size_t i = 0; i < count && items_.size() < itemLimit; ++i) {
        const std::string path = folder + "/" + randomName();
        if (depth < 6 && random_.percent(40)) {
            if (::mkdir(path.c_str(), 0755) == 0) {
                items_.push_back(path);
                folders_.push_back(path);
                fill(path, depth + 1);
            }
        } else {
            makeLeaf(path);
        }
    }
}

void RandomTree::makeLeaf(const std::string& path) {
    int made = -1;
    switch (random_.below(8)) {
    case 0:
        made = ::symlink(outside_.c_str(), path.c_str());
        break;
    case 1:
        made = ::symlink(random_.pick(items_).c_str(), path.c_str());
        break;
    case 2:
        made = ::link((outside_ + "/file" + std::to_string(random_.below(4))).c_str(), path.c_str());
        break;
    case 3:
        made = ::mkfifo(path.c_str(), 0600);
        break;
    default: {
        const mode_t mode = random_.percent(20) ? 0000 : 0644;
        const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (file >= 0) {
            const std::string content = std::to_string(random_.next());
            made = ::write(file, content.data(), content.size()) > 0 ? 0 : -1;
            // Unreadable files are sealed with the folders, once their content is known.
            if (mode == 0000) {
                folders_.push_back(path);
            }
            ::close(file);
        }
    }
    }
    if (made == 0) {
        items_.push_back(path);
    }
}

std::vector<std::pair<std::string, mode_t>> RandomTree::sealSomeFolders() {
    static const std::vector<mode_t> modes{0000, 0111, 0333, 0444, 0555, 0666, 0711};
    std::vector<std::pair<std::string, mode_t>> sealed;
    const unsigned chance = random_.percent(50) ? 0 : 15;
    // From the inside out, so that a sealed folder hides none that is still to be sealed.
    for (auto folder = folders_.rbegin(); folder != folders_.rend(); ++folder) {
        if (random_.percent(chance)) {
            const mode_t mode = random_.pick(modes);
            if (::chmod(folder->c_str(), mode) == 0) {
                sealed.emplace_back(*folder, mode);
            }
        }
    }
    return sealed;
}

} // namespace zentrill::test
