#include "process/SpawnChild.h"

#include "platform/Text.h"

#include <algorithm>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

namespace zentrill {

namespace {

// The system must close what is above standard error even if some library opened it without close-on-exec.
#if defined(__GLIBC__) && defined(__GLIBC_PREREQ)
#if __GLIBC_PREREQ(2, 34)
#define ZENTRILL_SPAWN_CAN_CLOSE_FROM
#endif
#endif
#ifdef POSIX_SPAWN_CLOEXEC_DEFAULT
constexpr int closeByDefault = POSIX_SPAWN_CLOEXEC_DEFAULT;
#else
constexpr int closeByDefault = 0;
#endif

class FileActions {
public:
    FileActions() noexcept { ::posix_spawn_file_actions_init(&actions_); }

    ~FileActions() { ::posix_spawn_file_actions_destroy(&actions_); }

    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;
    FileActions(FileActions&&) = delete;
    FileActions& operator=(FileActions&&) = delete;

    /// An error number, 0 for none.
    int connect(int output, int errorOutput) noexcept {
        int error = ::posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        if (error == 0) {
            error = ::posix_spawn_file_actions_adddup2(&actions_, output, STDOUT_FILENO);
        }
        if (error == 0) {
            error = ::posix_spawn_file_actions_adddup2(&actions_, errorOutput, STDERR_FILENO);
        }
#ifdef ZENTRILL_SPAWN_CAN_CLOSE_FROM
        if (error == 0) {
            error = ::posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1);
        }
#endif
        return error;
    }

    [[nodiscard]] const posix_spawn_file_actions_t* get() const noexcept { return &actions_; }

private:
    posix_spawn_file_actions_t actions_{};
};

class Attributes {
public:
    Attributes() noexcept {
        ::posix_spawnattr_init(&attributes_);
        sigset_t signals; // The functions for it are macros on a Mac, which allow no "::" in front of them.
        sigfillset(&signals);
        // Their handling cannot be changed, and some systems refuse a set that contains them.
        sigdelset(&signals, SIGKILL);
        sigdelset(&signals, SIGSTOP);
        ::posix_spawnattr_setsigdefault(&attributes_, &signals);
        sigemptyset(&signals);
        ::posix_spawnattr_setsigmask(&attributes_, &signals);
        ::posix_spawnattr_setpgroup(&attributes_, 0);
        ::posix_spawnattr_setflags(&attributes_,
                                   static_cast<short>(POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF |
                                                      POSIX_SPAWN_SETSIGMASK | closeByDefault));
    }

    ~Attributes() { ::posix_spawnattr_destroy(&attributes_); }

    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;
    Attributes(Attributes&&) = delete;
    Attributes& operator=(Attributes&&) = delete;

    [[nodiscard]] const posix_spawnattr_t* get() const noexcept { return &attributes_; }

private:
    posix_spawnattr_t attributes_{};
};

/// The system would cut a text at its first NUL and take a name with "=" for another variable.
bool canBePassedOn(const std::string& executable, const std::vector<std::string>& arguments,
                   const Environment& environment) {
    return !hasNul(executable) && std::ranges::none_of(arguments, hasNul) &&
           std::ranges::none_of(environment, [](const auto& variable) {
               return variable.first.empty() || hasNul(variable.first) || hasNul(variable.second) ||
                      variable.first.find('=') != std::string::npos;
           });
}

/// Pointers into `texts` and a null pointer at the end, as the system expects them.
std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> assignments(const Environment& environment) {
    std::vector<std::string> result;
    result.reserve(environment.size());
    for (const auto& [name, value] : environment) {
        result.push_back(std::string(name).append("=").append(value));
    }
    return result;
}

SpawnedChild failure(int error) {
    return {.child = std::nullopt, .error = {error, std::generic_category()}};
}

} // namespace

SpawnedChild spawnChild(const std::string& executable, const std::vector<std::string>& arguments,
                        const Environment& environment, int output, int errorOutput) {
    if (!canBePassedOn(executable, arguments, environment)) {
        return failure(EINVAL);
    }
    std::vector<std::string> words{executable};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> variables = assignments(environment);

    FileActions actions;
    if (const int error = actions.connect(output, errorOutput); error != 0) {
        return failure(error);
    }
    const Attributes attributes;
    pid_t pid = -1;
    const int error = ::posix_spawn(&pid, executable.c_str(), actions.get(), attributes.get(),
                                    pointersTo(words).data(), pointersTo(variables).data());
    if (error != 0) {
        return failure(error);
    }
    return {.child = ChildProcess(pid), .error = {}};
}

} // namespace zentrill
