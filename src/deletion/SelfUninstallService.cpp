#include "deletion/SelfUninstallService.h"

#include "platform/HomeDirectory.h"
#include "platform/Paths.h"
#include "platform/PropertyList.h"
#include "platform/Text.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace zentrill {

namespace {

std::vector<std::string> defaultApplicationDirectories() {
    std::vector<std::string> directories{"/Applications"};
    if (const std::string home = homeDirectory(); !home.empty()) {
        directories.push_back(paths::appending(home, "Applications"));
    }
    return directories;
}

std::optional<std::string> bundleIdentifier(const std::string& bundle) {
    return propertyListString(paths::appending(bundle, "Contents/Info.plist"), "CFBundleIdentifier");
}

void append(std::vector<std::string>& list, const std::vector<std::string>& more) {
    list.insert(list.end(), more.begin(), more.end());
}

} // namespace

SelfUninstallService::SelfUninstallService(
    std::string expectedBundleIdentifier,
    std::optional<std::vector<std::string>> allowedApplicationDirectories, const FileSystem& fileManager,
    std::shared_ptr<const SafeDeletionEngine> deletion, std::vector<std::string> additionalOwnedData)
    : expectedBundleIdentifier_(std::move(expectedBundleIdentifier)),
      allowedApplicationDirectories_(allowedApplicationDirectories ? std::move(*allowedApplicationDirectories)
                                                                   : defaultApplicationDirectories()),
      fileManager_(&fileManager),
      deletion_(deletion ? std::move(deletion) : std::make_shared<const SafeDeletionEngine>(fileManager)),
      additionalOwnedData_(std::move(additionalOwnedData)) {}

std::vector<std::string> SelfUninstallService::ownedDataURLs(const std::string& homeDirectory) const {
    if (homeDirectory.empty()) {
        return {}; // Relative to the root, these paths would be the system's.
    }
    const std::string& id = expectedBundleIdentifier_;
    std::vector<std::string> paths{
        "Library/Preferences/" + id + ".plist",
        "Library/Caches/" + id,
        "Library/Application Support/" + id,
        "Library/Logs/" + id,
        "Library/Saved Application State/" + id + ".savedState",
    };
    for (std::string& path : paths) {
        path = paths::standardized(paths::appending(homeDirectory, path));
    }
    return paths;
}

SelfUninstallResult SelfUninstallService::uninstall(const std::string& bundleURL,
                                                    const std::string& homeDirectory) const {
    // With a trailing slash, a link to a bundle would pass for the bundle.
    const std::string bundle = paths::standardized(bundleURL);
    std::vector<std::string> dataURLs = ownedDataURLs(homeDirectory);
    append(dataURLs, existingPaths(additionalOwnedData_));
    std::vector<std::string> ownPaths{bundle};
    append(ownPaths, dataURLs);

    SelfUninstallResult result;
    const auto finish = [&] {
        result.remainingPaths = existingPaths(ownPaths);
        return result;
    };
    const auto remove = [&](const std::string& path) {
        const DeletionReport report = deletion_->deleteItem(path, {});
        append(result.removedPaths, report.removed);
        append(result.failures, report.failures);
    };

    result.failures = validate(bundle, dataURLs);
    if (!result.failures.empty()) {
        return finish();
    }
    for (const std::string& path : dataURLs) {
        if (itemExistsWithoutFollowingSymlink(path)) {
            remove(path);
        }
        if (!result.failures.empty()) {
            return finish();
        }
    }
    remove(bundle);
    finish();
    if (result.failures.empty() && !result.remainingPaths.empty()) {
        result.failures.push_back("Cleanup left these paths behind: " + joined(result.remainingPaths, ", "));
    }
    return result;
}

std::vector<std::string> SelfUninstallService::validate(const std::string& bundleURL,
                                                        const std::vector<std::string>& dataURLs) const {
    if (paths::extension(bundleURL) != "app") {
        return {"Self-uninstall requires an installed .app bundle."};
    }
    const std::string parent = paths::standardized(paths::parent(bundleURL));
    if (std::ranges::find(allowedApplicationDirectories_, parent, [](const std::string& path) {
            return paths::standardized(path);
        }) == allowedApplicationDirectories_.end()) {
        return {"Self-uninstall is limited to a direct child of an approved Applications directory."};
    }
    if (!itemExistsWithoutFollowingSymlink(bundleURL)) {
        return {"The app bundle no longer exists."};
    }
    std::vector<std::string> messages;
    validateBundle(bundleURL, messages);
    if (!fileManager_->isWritable(parent)) {
        messages.emplace_back("The Applications directory is not writable.");
    }
    if (std::optional<std::string> refusal = deletion_->deletionRefusal(bundleURL)) {
        messages.push_back(std::move(*refusal));
    }
    for (const std::string& path : dataURLs) {
        validateData(path, messages);
    }
    return messages;
}

void SelfUninstallService::validateBundle(const std::string& path, std::vector<std::string>& messages) const {
    if (const std::optional<FileAttributes> attributes = fileManager_->attributes(path)) {
        if (!attributes->isDirectory) {
            messages.emplace_back("The self-uninstall target is not an app directory.");
        }
        if (attributes->isSymbolicLink) {
            messages.emplace_back("The self-uninstall target cannot be a symbolic link.");
        }
        if (attributes->volumeIsReadOnly) {
            messages.emplace_back("The app is on a read-only volume. Install it in Applications first.");
        }
    } else {
        messages.emplace_back("The app bundle metadata could not be read.");
    }
    if (bundleIdentifier(path) != expectedBundleIdentifier_) {
        messages.push_back("The app bundle identifier does not match " + expectedBundleIdentifier_ + ".");
    }
}

void SelfUninstallService::validateData(const std::string& path, std::vector<std::string>& messages) const {
    if (std::optional<std::string> refusal = deletion_->deletionRefusal(path)) {
        messages.push_back(std::move(*refusal));
    }
    const std::optional<std::string> parent = nearestExistingParent(path);
    if (parent && !fileManager_->isWritable(*parent)) {
        messages.push_back("Cleanup parent is not writable: " + *parent);
    }
}

std::vector<std::string> SelfUninstallService::existingPaths(const std::vector<std::string>& paths) const {
    std::vector<std::string> existing;
    std::ranges::copy_if(paths, std::back_inserter(existing),
                         [this](const std::string& path) { return itemExistsWithoutFollowingSymlink(path); });
    return existing;
}

bool SelfUninstallService::itemExistsWithoutFollowingSymlink(const std::string& path) const {
    return fileManager_->itemExistsWithoutFollowingSymlink(path);
}

std::optional<std::string> SelfUninstallService::nearestExistingParent(std::string path) const {
    while (!fileManager_->fileExists(path)) {
        if (path.empty() || path == "/") {
            return std::nullopt;
        }
        path = std::string(paths::parent(path));
    }
    return path;
}

} // namespace zentrill
