#include "docker/DockerScanner.h"

#include "docker/DockerListing.h"

#include <algorithm>
#include <chrono>
#include <set>
#include <string_view>
#include <utility>
#include <variant>

namespace zentrill {

namespace {

using namespace std::chrono_literals;
using Arguments = std::vector<std::string>;

constexpr CommandExecuting::Timeout contextTimeout = 5s;
constexpr CommandExecuting::Timeout daemonTimeout = 8s;
constexpr CommandExecuting::Timeout listingTimeout = 10s;

/// The tool, bound to one endpoint once that is known.
class Client {
public:
    Client(CommandExecuting& commands, std::string executable)
        : commands_(commands), executable_(std::move(executable)) {}

    void bind(DockerConnection connection) { connection_ = std::move(connection); }

    [[nodiscard]] const DockerConnection& connection() const { return connection_; }

    [[nodiscard]] CommandResult run(const Arguments& subcommand, CommandExecuting::Timeout timeout) const {
        Arguments arguments = connection_.arguments;
        arguments.insert(arguments.end(), subcommand.begin(), subcommand.end());
        return commands_.run(executable_, arguments, timeout);
    }

private:
    CommandExecuting& commands_;
    std::string executable_;
    DockerConnection connection_;
};

std::string valueOf(const Environment& environment, const std::string& name) {
    const auto found = environment.find(name);
    return found == environment.end() ? std::string() : found->second;
}

/// The name of the context that the tool is set to, as it printed it, or the result of a failure.
CommandResult activeContext(const Client& client) {
    CommandResult shown = client.run({"context", "show"}, contextTimeout);
    if (shown.succeeded()) {
        return shown;
    }
    // Tools before version 23, such as that of Debian 12, cannot show it; without a name, inspecting shows
    // the active one.
    const CommandResult inspected =
        client.run({"context", "inspect", "--format", "{{.Name}}"}, contextTimeout);
    const bool isNamed = inspected.succeeded() && !docker_listing::trimmed(inspected.stdout).empty();
    return isNamed ? inspected : shown;
}

/// Either the endpoint or the text that says why there is none.
std::variant<DockerConnection, std::string> resolveConnection(const Client& client,
                                                              const Environment& environment) {
    if (const std::string context = valueOf(environment, "DOCKER_CONTEXT"); !context.empty()) {
        return DockerConnection{.arguments = {"--context", context}, .displayName = context};
    }
    if (const std::string host = valueOf(environment, "DOCKER_HOST"); !host.empty()) {
        return DockerConnection{.arguments = {"--host", host}, .displayName = "DOCKER_HOST override"};
    }
    const CommandResult shown = activeContext(client);
    if (!shown.succeeded()) {
        return "Docker CLI is installed, but its active context could not be resolved. " + shown.diagnostic();
    }
    const std::string context(docker_listing::trimmed(shown.stdout));
    if (context.empty()) {
        return "Docker CLI is installed, but it returned an empty active context.";
    }
    return DockerConnection{.arguments = {"--context", context}, .displayName = context};
}

std::string counted(std::size_t count, std::string_view noun) {
    return std::to_string(count).append(" ").append(noun).append(count == 1 ? "" : "s");
}

/// The inventory of images, with a warning about everything doubtful.
class ImageInventory {
public:
    void list(const Client& client) {
        const CommandResult listed =
            client.run({"image", "ls", "--no-trunc", "--format", "{{json .}}"}, listingTimeout);
        if (!listed.succeeded()) {
            warn("Image inventory failed: " + listed.diagnostic());
            return;
        }
        if (!listed.stdoutIsWhole) {
            warn("Image inventory failed: Docker's answer could not be read as a whole.");
            return;
        }
        docker_listing::Images read = docker_listing::images(listed.stdout);
        if (read.malformedCount > 0) {
            warn("Ignored " + counted(read.malformedCount, "malformed image record") + ".");
        }
        for (DockerImageRecord& record : read.records) {
            images_.push_back({.imageID = std::move(record.imageID),
                               .tags = std::move(record.tags),
                               .size = std::move(record.size),
                               .usage = DockerImageUsage::unknown,
                               .connection = client.connection()});
        }
    }

    void determineUsage(const Client& client, const docker_listing::Containers& containers) {
        if (containers.unreadableCount > 0) {
            warn("Could not read " + counted(containers.unreadableCount, "container record") +
                 "; image removal is disabled until the next successful scan.");
        }
        const std::optional<std::set<std::string>> used = usedImageIDs(client, containers.records);
        // An image that only an unreadable container uses would seem unused.
        if (!used || containers.unreadableCount > 0) {
            return;
        }
        for (DockerImage& image : images_) {
            image.usage = used->contains(docker_listing::canonicalImageID(image.imageID))
                              ? DockerImageUsage::inUse
                              : DockerImageUsage::unused;
        }
    }

    [[nodiscard]] std::vector<DockerImage> takeImages() { return std::move(images_); }

    [[nodiscard]] std::optional<std::string> warning() const { return warning_; }

private:
    std::vector<DockerImage> images_;
    std::optional<std::string> warning_;

    void warn(const std::string& text) { warning_ = warning_ ? *warning_ + " " + text : text; }

    /// Nothing, and a warning, if the tool's answer leaves a doubt.
    std::optional<std::set<std::string>> usedImageIDs(const Client& client,
                                                      const std::vector<DockerRecord>& containers) {
        if (containers.empty()) {
            return std::set<std::string>();
        }
        Arguments arguments{"inspect", "--type", "container", "--format", "{{.Image}}"};
        for (const DockerRecord& container : containers) {
            arguments.push_back(container.id);
        }
        const CommandResult inspected = client.run(arguments, listingTimeout);
        if (!inspected.succeeded()) {
            warn("Could not determine which images are in use; removal is disabled until the next successful "
                 "scan.");
            return std::nullopt;
        }
        std::optional<std::set<std::string>> used =
            inspected.stdoutIsWhole ? docker_listing::usedImageIDs(inspected.stdout, containers.size())
                                    : std::nullopt;
        if (!used) {
            warn("Docker returned incomplete container image IDs; image removal is disabled until the next "
                 "successful scan.");
        }
        return used;
    }
};

DockerAvailability unavailable(std::string message) {
    return {DockerAvailability::DaemonUnavailable{std::move(message)}};
}

} // namespace

DockerScanner::DockerScanner(std::shared_ptr<CommandExecuting> commands,
                             std::shared_ptr<const DockerExecutableLocating> locator, Environment environment)
    : commands_(std::move(commands)), locator_(std::move(locator)), environment_(std::move(environment)) {}

DockerAvailability DockerScanner::scan() const {
    std::optional<std::string> executable = locator_->locate();
    if (!executable) {
        return {DockerAvailability::MissingCLI{}};
    }
    Client client(*commands_, std::move(*executable));

    std::variant<DockerConnection, std::string> connection = resolveConnection(client, environment_);
    if (auto* message = std::get_if<std::string>(&connection)) {
        return unavailable(std::move(*message));
    }
    client.bind(std::get<DockerConnection>(std::move(connection)));

    const std::string& name = client.connection().displayName;
    const CommandResult answered = client.run({"version", "--format", "{{.Server.Version}}"}, daemonTimeout);
    if (!answered.succeeded()) {
        return unavailable("Docker CLI is installed, but connection '" + name +
                           "' is unavailable. Start Docker Desktop (or restore that connection), then choose "
                           "Scan System. " +
                           answered.diagnostic());
    }

    const CommandResult listed =
        client.run({"container", "ls", "-a", "--no-trunc", "--format", "{{json .}}"}, listingTimeout);
    if (!listed.succeeded()) {
        return unavailable("Docker connection '" + name +
                           "' responded, but its container inventory failed. " + listed.diagnostic());
    }
    docker_listing::Containers containers = docker_listing::containers(listed.stdout, client.connection());

    if (!listed.stdoutIsWhole) {
        // Any number of containers may be missing, and so may the images that they use.
        containers.unreadableCount = std::max<std::size_t>(containers.unreadableCount, 1);
    }

    ImageInventory images;
    images.list(client);
    images.determineUsage(client, containers);
    return {DockerAvailability::Available{
        .connection = client.connection(),
        .containers = std::move(containers.records),
        .images = images.takeImages(),
        .imageWarning = images.warning(),
    }};
}

} // namespace zentrill
