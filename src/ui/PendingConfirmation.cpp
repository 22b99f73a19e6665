#include "ui/PendingConfirmation.h"

#include "controller/ConfirmationCopy.h"
#include "ui/models/Overloaded.h"

namespace zentrill {

namespace {

std::string applicationsMessage(const PendingConfirmation::Apps& pending) {
    std::vector<std::string> names;
    names.reserve(pending.apps.size());
    for (const AppInfo& app : pending.apps) {
        names.push_back(app.displayName);
    }
    return ConfirmationCopy::applications(names, pending.preserveCredentials);
}

/// An image with several tags is named by the first of them; the ID beside it is exact.
std::string imageMessage(const DockerImage& image) {
    const std::string tag = image.tags.empty() ? "Untagged image" : image.tags.front();
    return "Remove " + tag + " (" + image.shortID() + ", " + image.size + ") from Docker connection '" +
           image.connection.displayName +
           "'? Docker will receive the exact full image ID without force. Images can share layers, so the "
           "displayed virtual size is not guaranteed reclaimable space.";
}

} // namespace

std::string PendingConfirmation::title() const {
    return std::visit(Overloaded{
                          [](const Apps& pending) {
                              return "Uninstall " + std::to_string(pending.apps.size()) + " Application" +
                                     (pending.apps.size() == 1 ? "?" : "s?");
                          },
                          [](const LocalModel& model) { return "Delete " + model.name + "?"; },
                          [](const DockerContainer&) { return std::string("Delete Container?"); },
                          [](const DockerImage&) { return std::string("Remove Docker Image?"); },
                          [](const SelfUninstall&) { return std::string("Self-Uninstall Zentrill?"); },
                      },
                      action);
}

std::string PendingConfirmation::message() const {
    return std::visit(
        Overloaded{
            [](const Apps& pending) { return applicationsMessage(pending); },
            [](const LocalModel& model) {
                return "Permanently delete " + model.name + " (" + model.sizeFormatted() +
                       ")? This operation cannot be undone.";
            },
            [](const DockerContainer& container) {
                return "Permanently delete container " + container.name +
                       "? It will be stopped first if it is running.";
            },
            [](const DockerImage& image) { return imageMessage(image); },
            [](const SelfUninstall&) {
                return std::string(
                    "Permanently remove the installed Zentrill app plus its preferences, cache, application "
                    "support, logs, and saved window state? macOS backups and system logs are outside the "
                    "app's control.");
            },
        },
        action);
}

std::string PendingConfirmation::actionTitle() const {
    return std::visit(Overloaded{
                          [](const Apps&) { return std::string("Uninstall"); },
                          [](const LocalModel&) { return std::string("Delete Permanently"); },
                          [](const DockerContainer&) { return std::string("Delete"); },
                          [](const DockerImage&) { return std::string("Remove Image"); },
                          [](const SelfUninstall&) { return std::string("Uninstall Zentrill"); },
                      },
                      action);
}

} // namespace zentrill
