#include "support/DockerEngine.h"

#include "platform/FileDescriptor.h"
#include "process/ChildEndNotice.h"
#include "process/ShellCommandRunner.h"
#include "process/SpawnChild.h"
#include "support/Processes.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <ranges>
#include <sstream>
#include <stdexcept>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace zentrill::test {

namespace {

constexpr auto daemon = "/usr/sbin/dockerd";
constexpr auto client = "/usr/bin/docker";
constexpr auto shell = "/bin/busybox";
constexpr auto asSoonAsTheParentDies = "/usr/bin/setpriv";
constexpr auto inNamespaces = "/usr/bin/unshare";

/// The engine keeps a few files in /run and /etc wherever its data is; here they go to layers that vanish
/// with the mount namespace. $1 is the folder of the engine.
constexpr auto startScript = R"(
set -e
mount -t tmpfs tmpfs /run
mkdir /run/etc-changes /run/etc-work
mount -t overlay overlay -o lowerdir=/etc,upperdir=/run/etc-changes,workdir=/run/etc-work /etc
exec /usr/sbin/dockerd --config-file="$1/daemon.json" --host="unix://$1/docker.sock" \
    --data-root="$1/data" --exec-root="$1/exec" --pidfile="$1/docker.pid" \
    --storage-driver=vfs --exec-opt native.cgroupdriver=cgroupfs --cgroup-parent="/${1##*/}" \
    --bridge=none --userland-proxy=false \
    --iptables=false --ip6tables=false --ip-forward=false --ip-masq=false
)";

/// What a container's root may not do by default.
constexpr auto trialScript = R"(
mount -t tmpfs tmpfs /run || exit
test -w /sys/fs/cgroup || { echo "/sys/fs/cgroup: read-only" >&2; exit 1; }
)";

/// The processes that `pid` has started and not yet reaped.
std::vector<pid_t> childrenOf(pid_t pid) {
    const std::string number = std::to_string(pid);
    std::istringstream text(contentOf("/proc/" + number + "/task/" + number + "/children"));
    std::vector<pid_t> children;
    for (pid_t child = 0; text >> child;) {
        children.push_back(child);
    }
    return children;
}

/// Whether the control groups of the engine's containers, which outlive them, are gone: below one called
/// `name` in each hierarchy that there is.
bool removesControlGroups(const std::string& name) {
    namespace fs = std::filesystem;
    const fs::path hierarchies = "/sys/fs/cgroup";
    std::error_code error;
    std::vector<fs::path> tops{hierarchies / name};
    for (const fs::directory_entry& hierarchy : fs::directory_iterator(hierarchies, error)) {
        tops.push_back(hierarchy.path() / name);
    }
    std::erase_if(tops, [&](const fs::path& top) {
        std::vector<fs::path> groups{top};
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(top, error)) {
            if (entry.is_directory(error)) {
                groups.push_back(entry.path());
            }
        }
        std::ranges::for_each(groups | std::views::reverse,
                              [](const fs::path& group) { ::rmdir(group.c_str()); });
        return !fs::exists(top, error);
    });
    return tops.empty();
}

std::string printed(const CommandResult& result) {
    if (!result.succeeded()) {
        throw std::runtime_error(result.diagnostic());
    }
    return result.stdout.substr(0, result.stdout.find_last_not_of('\n') + 1);
}

} // namespace

std::optional<std::string> DockerEngine::obstacle() {
    if (::geteuid() != 0) {
        return "needs root to start a Docker Engine";
    }
    for (const char* needed : {daemon, client, shell, asSoonAsTheParentDies, inNamespaces}) {
        if (::access(needed, X_OK) != 0) {
            return std::string(needed) + " is missing: install docker.io, busybox-static and util-linux";
        }
    }
    const CommandResult trial = ShellCommandRunner().run(
        inNamespaces, {"--mount", "--pid", "--fork", "--mount-proc", "/bin/sh", "-c", trialScript});
    if (!trial.succeeded()) {
        return "needs mounts and control groups of its own to start a Docker Engine: " + trial.diagnostic();
    }
    return std::nullopt;
}

std::vector<std::string> DockerEngine::clients() {
    std::vector<std::string> found;
    for (const char* candidate : {client, "/usr/local/bin/docker"}) {
        if (::access(candidate, X_OK) == 0) {
            found.emplace_back(candidate);
        }
    }
    return found;
}

DockerEngine::DockerEngine() : environment_(ShellCommandRunner::defaultEnvironment()) {
    environment_["HOME"] = folder_.makeDirectory("home");
    environment_["DOCKER_CONFIG"] = folder_.path("home");
    environment_["TMPDIR"] = folder_.makeDirectory("tmp");
    environment_["DOCKER_HOST"] = host();
    environment_.erase("DOCKER_CONTEXT");
    waitUntilReady(start());
}

DockerEngine::~DockerEngine() {
    stop();
    // Busy until the last of the processes is reaped.
    static_cast<void>(
        eventually([this] { return removesControlGroups(std::filesystem::path(folder_.path()).filename()); },
                   std::chrono::seconds(10)));
}

std::string DockerEngine::host() const {
    return "unix://" + folder_.path("docker.sock");
}

pid_t DockerEngine::start() {
    folder_.makeFile("daemon.json", "{}\n");
    const FileDescriptor log(
        ::open(folder_.path("log").c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, S_IRUSR | S_IWUSR));
    SpawnedChild spawned =
        spawnChild(asSoonAsTheParentDies,
                   {"--pdeathsig", "KILL", inNamespaces, "--mount", "--pid", "--fork", "--kill-child",
                    "--mount-proc", "/bin/sh", "-c", startScript, "sh", folder_.path()},
                   environment_, log.get(), log.get());
    if (!spawned.child) {
        throw std::runtime_error("cannot start the Docker Engine: " + spawned.error.message());
    }
    return namespaces_.emplace(std::move(*spawned.child)).id();
}

void DockerEngine::waitUntilReady(pid_t pid) {
    const ChildEndNotice end(pid);
    const bool ready = eventually([&] { return answers() || end.wait(std::chrono::milliseconds(0)); },
                                  std::chrono::seconds(60));
    if (!ready || !answers()) {
        throw std::runtime_error("the Docker Engine does not start:\n" + contentOf(folder_.path("log")));
    }
}

bool DockerEngine::answers() const {
    if (!std::filesystem::exists(folder_.path("docker.sock"))) {
        return false;
    }
    return ShellCommandRunner(environment_).run(client, {"version"}, std::chrono::seconds(10)).succeeded();
}

void DockerEngine::stop() {
    if (!namespaces_) {
        return;
    }
    // The kernel ends every process of the namespace before the first one counts as gone.
    for (const pid_t first : childrenOf(namespaces_->id())) {
        ::kill(first, SIGKILL);
    }
    static_cast<void>(ChildEndNotice(namespaces_->id()).wait(std::chrono::seconds(30)));
    namespaces_.reset();
}

std::string DockerEngine::docker(const std::vector<std::string>& arguments) {
    return printed(ShellCommandRunner(environment_).run(client, arguments, std::chrono::seconds(60)));
}

std::string DockerEngine::makeImage(const std::string& tag) {
    const std::string name = "image" + std::to_string(++imageCount_);
    folder_.makeFile(name + "/name", name);
    const std::string root = folder_.makeDirectory(name);
    std::filesystem::create_directory(root + "/bin");
    std::filesystem::copy_file(shell, root + "/bin/busybox");
    const std::string archive = folder_.path(name + ".tar");
    printed(ShellCommandRunner(environment_)
                .run("/bin/tar", {"--create", "--file", archive, "--directory", root, "."}));
    std::vector<std::string> arguments{"import", archive};
    if (!tag.empty()) {
        arguments.push_back(tag);
    }
    return docker(arguments);
}

std::string DockerEngine::startContainer(const std::string& name, const std::string& image) {
    return docker({"run", "--detach", "--network", "none", "--name", name, image, shell, "sh", "-c",
                   "trap exit TERM; while :; do /bin/busybox sleep 0.05; done"});
}

std::string DockerEngine::runContainer(const std::string& name, const std::string& image) {
    docker({"run", "--network", "none", "--name", name, image, shell, "true"});
    return docker({"inspect", "--format", "{{.Id}}", name});
}

} // namespace zentrill::test
