// zentrill-confine: becomes another program that can change nothing but its own folders.

#include "support/confinement/Confinement.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace {

using namespace zentrill::confinement;

constexpr int failed = 1;
constexpr int misused = 2;
constexpr int skipped = 77;
constexpr int notExecutable = 126;
constexpr int notFound = 127;

constexpr auto usage =
    "Usage: zentrill-confine [--write DIR]... [--] COMMAND [ARGUMENT ...]\n"
    "       zentrill-confine --rung\n"
    "\n"
    "Becomes COMMAND, with nothing on the machine that it could create, write, rename, link or remove but "
    "below\n"
    "each DIR and in a scratch folder of its own. TMPDIR names that folder; it goes when the command and all "
    "that\n"
    "it started have ended. Where nothing confines a program it is not run: the exit status is 77.\n"
    "\n"
    "--rung prints what would confine a program: namespaces, landlock, user or none.\n"
    "The variable ZENTRILL_CONFINEMENT takes one of these names to force it.\n";

struct Arguments {
    bool onlyRung = false;
    std::vector<std::string> writable;
    /// Ends with a null pointer, as exec wants it.
    char** command = nullptr;
};

std::optional<Arguments> parsed(char** argument) {
    Arguments arguments;
    for (++argument; *argument != nullptr && **argument == '-'; ++argument) {
        const std::string_view option = *argument;
        if (option == "--") {
            ++argument;
            break;
        }
        if (option == "--rung") {
            arguments.onlyRung = true;
        } else if (option == "--write" && argument[1] != nullptr) {
            arguments.writable.emplace_back(*++argument);
        } else {
            return std::nullopt;
        }
    }
    arguments.command = argument;
    if (arguments.onlyRung == (*argument != nullptr)) {
        return std::nullopt;
    }
    return arguments;
}

int printRung(const std::vector<std::string>& writable) {
    try {
        std::puts(std::string(nameOf(confineThisProcess(writable).rung)).c_str());
    } catch (const NoRung&) {
        std::puts("none");
    }
    return 0;
}

int become(char** command, const std::vector<std::string>& writable) {
    const Confinement confinement = confineThisProcess(writable);
    if (confinement.hold >= 0) {
        // Stays open, and the scratch with it, as long as the program and what it starts.
        ::fcntl(confinement.hold, F_SETFD, 0);
    }
    ::execvp(command[0], command);
    const int error = errno;
    std::fprintf(stderr, "zentrill-confine: %s: %s\n", command[0], std::strerror(error));
    return error == ENOENT ? notFound : notExecutable;
}

} // namespace

int main(int /*argc*/, char** argv) {
    const std::optional<Arguments> arguments = parsed(argv);
    if (!arguments) {
        std::fputs(usage, stderr);
        return misused;
    }
    try {
        std::vector<std::string> writable;
        for (const std::string& folder : arguments->writable) {
            writable.push_back(std::filesystem::canonical(folder));
            if (!std::filesystem::is_directory(writable.back())) {
                throw std::invalid_argument(folder + " is no folder");
            }
            if (::access(writable.back().c_str(), W_OK) != 0) {
                throw std::invalid_argument(folder + " cannot be written to");
            }
        }
        return arguments->onlyRung ? printRung(writable) : become(arguments->command, writable);
    } catch (const NoRung& nothing) {
        std::fprintf(stderr, "zentrill-confine: nothing here confines a program: %s\n", nothing.what());
        return skipped;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "zentrill-confine: %s\n", error.what());
        return failed;
    }
}
