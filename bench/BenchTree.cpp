#include "BenchTree.h"

#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zentrill::bench {

std::string makeFolder(const std::string& parent) {
    std::string folder = parent + "/zentrill-bench-XXXXXX";
    if (::mkdtemp(folder.data()) == nullptr) {
        std::perror(folder.c_str());
        std::exit(1);
    }
    return folder;
}

void makeTree(const std::string& path, int folders, int filesPerFolder) {
    ::mkdir(path.c_str(), 0700);
    for (int folder = 0; folder < folders; ++folder) {
        const std::string name = path + "/folder-" + std::to_string(folder);
        ::mkdir(name.c_str(), 0700);
        const int directory = ::open(name.c_str(), O_DIRECTORY | O_CLOEXEC);
        for (int file = 0; file < filesPerFolder; ++file) {
            const std::string entry = "file-" + std::to_string(file) + ".bin";
            ::close(::openat(directory, entry.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
        }
        ::close(directory);
    }
    // On disk nobody is to pay for writing down what the other one made.
    const int top = ::open(path.c_str(), O_DIRECTORY | O_CLOEXEC);
    ::syncfs(top);
    ::close(top);
}

} // namespace zentrill::bench
