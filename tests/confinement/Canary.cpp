#include "Canary.h"

#include "support/Processes.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace zentrill::test {

namespace {

namespace fs = std::filesystem;

bool opens(const std::string& path, int flags) {
    const int opened = ::open(path.c_str(), flags | O_CLOEXEC, 0600);
    if (opened >= 0) {
        ::close(opened);
    }
    return opened >= 0;
}

bool binds(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) {
        return false;
    }
    std::memcpy(static_cast<char*>(address.sun_path), path.c_str(), path.size());
    const int made = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    // POSIX's own way to say it.
    const bool bound =
        ::bind(made, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0; // NOLINT
    ::close(made);
    return bound;
}

bool renames(const std::string& from, const std::string& to, unsigned flags = 0) {
    return ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), flags) == 0;
}

using Path = const std::string&;

} // namespace

Canary::Canary() {
    folder_.makeFile("outside/file", "content");
    folder_.makeFile("outside/folder/file", "content");
    folder_.makeDirectory("outside/empty");
    // A user that nothing confines but its id must find the way in.
    for (const char* name : {".", "outside", "outside/folder", "outside/empty"}) {
        fs::permissions(folder_.path(name), fs::perms(0755));
    }
}

const std::vector<Canary::Attempt>& Canary::attempts() {
    static const std::vector<Attempt> all{
        {"unlink", [](Path out, Path) { return ::unlink((out + "/file").c_str()) == 0; }},
        {"unlink deeper", [](Path out, Path) { return ::unlink((out + "/folder/file").c_str()) == 0; }},
        {"rmdir", [](Path out, Path) { return ::rmdir((out + "/empty").c_str()) == 0; }},
        {"rename", [](Path out, Path) { return renames(out + "/file", out + "/other"); }},
        {"rename a folder", [](Path out, Path) { return renames(out + "/folder", out + "/other"); }},
        {"rename out of it", [](Path out, Path in) { return renames(out + "/file", in + "/other"); }},
        {"rename a folder out of it",
         [](Path out, Path in) { return renames(out + "/folder", in + "/other"); }},
        {"rename into it", [](Path out, Path in) { return renames(in + "/file", out + "/other"); }},
        {"rename over it", [](Path out, Path in) { return renames(in + "/file", out + "/file"); }},
        {"exchange", [](Path out, Path in) { return renames(in + "/file", out + "/file", RENAME_EXCHANGE); }},
        {"truncate", [](Path out, Path) { return ::truncate((out + "/file").c_str(), 0) == 0; }},
        {"open for writing", [](Path out, Path) { return opens(out + "/file", O_WRONLY); }},
        {"open for both", [](Path out, Path) { return opens(out + "/file", O_RDWR); }},
        {"open for appending", [](Path out, Path) { return opens(out + "/file", O_WRONLY | O_APPEND); }},
        {"open and empty", [](Path out, Path) { return opens(out + "/file", O_WRONLY | O_TRUNC); }},
        {"read and empty", [](Path out, Path) { return opens(out + "/file", O_RDONLY | O_TRUNC); }},
        {"create", [](Path out, Path) { return opens(out + "/other", O_WRONLY | O_CREAT); }},
        {"create without a name", [](Path out, Path) { return opens(out, O_WRONLY | O_TMPFILE); }},
        {"link out of it",
         [](Path out, Path in) { return ::link((out + "/file").c_str(), (in + "/other").c_str()) == 0; }},
        {"link into it",
         [](Path out, Path in) { return ::link((in + "/file").c_str(), (out + "/other").c_str()) == 0; }},
        {"symlink", [](Path out, Path) { return ::symlink("/", (out + "/other").c_str()) == 0; }},
        {"mkdir", [](Path out, Path) { return ::mkdir((out + "/other").c_str(), 0700) == 0; }},
        {"mkfifo", [](Path out, Path) { return ::mkfifo((out + "/other").c_str(), 0600) == 0; }},
        {"mknod", [](Path out, Path) { return ::mknod((out + "/other").c_str(), S_IFREG | 0600, 0) == 0; }},
        {"bind", [](Path out, Path) { return binds(out + "/other"); }},
    };
    return all;
}

std::vector<std::string> Canary::workingAttempts(const std::string& inside) const {
    std::vector<std::string> working;
    for (const Attempt& attempt : attempts()) {
        std::ofstream(inside + "/file") << "content";
        if (attempt.works(path(), inside)) {
            working.push_back(attempt.name);
        }
    }
    return working;
}

bool Canary::onlyEmptiesFiles(const std::string& name) {
    return name == "truncate" || name == "read and empty";
}

std::vector<std::string> Canary::state() const {
    std::vector<std::string> state;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(path())) {
        state.push_back(entry.path().string() +
                        (entry.is_regular_file() ? ": " + contentOf(entry.path()) : ""));
    }
    std::ranges::sort(state);
    return state;
}

} // namespace zentrill::test
