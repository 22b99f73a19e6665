#pragma once

#include "deletion/SafeDeletionEngine.h"
#include "deletion/SelfUninstallResult.h"
#include "platform/FileSystem.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zentrill {

/// Removes the program itself: first its per-user data, then its bundle, after checking that both can go. All
/// locations are absolute paths. Holds no state between calls.
class SelfUninstallService {
public:
    static constexpr const char* defaultBundleIdentifier = "com.user.Zentrill";

    /// Without `allowedApplicationDirectories` the bundle may stand in /Applications or in the home folder's
    /// Applications; without `deletion` a new engine over `fileManager` is used. `fileManager` must outlive
    /// the service. `additionalOwnedData` are further paths that belong to the program; those that do not
    /// exist are ignored.
    explicit SelfUninstallService(
        std::string expectedBundleIdentifier = defaultBundleIdentifier,
        std::optional<std::vector<std::string>> allowedApplicationDirectories = std::nullopt,
        const FileSystem& fileManager = FileSystem::shared(),
        std::shared_ptr<const SafeDeletionEngine> deletion = nullptr,
        std::vector<std::string> additionalOwnedData = {});

    /// Where the program keeps data in that home folder: preferences, caches, application support, logs and
    /// saved window state. Empty for an empty path, which means that the home folder is not known.
    [[nodiscard]] std::vector<std::string> ownedDataURLs(const std::string& homeDirectory) const;

    /// Removes nothing unless all checks pass. If some data cannot be removed after all, the bundle stays, so
    /// that the person can try again.
    [[nodiscard]] SelfUninstallResult uninstall(const std::string& bundleURL,
                                                const std::string& homeDirectory) const;

private:
    [[nodiscard]] std::vector<std::string> validate(const std::string& bundleURL,
                                                    const std::vector<std::string>& dataURLs) const;
    void validateBundle(const std::string& path, std::vector<std::string>& messages) const;
    void validateData(const std::string& path, std::vector<std::string>& messages) const;
    [[nodiscard]] std::vector<std::string> existingPaths(const std::vector<std::string>& paths) const;
    [[nodiscard]] bool itemExistsWithoutFollowingSymlink(const std::string& path) const;
    [[nodiscard]] std::optional<std::string> nearestExistingParent(std::string path) const;

    std::string expectedBundleIdentifier_;
    std::vector<std::string> allowedApplicationDirectories_;
    const FileSystem* fileManager_;
    std::shared_ptr<const SafeDeletionEngine> deletion_;
    std::vector<std::string> additionalOwnedData_;
};

} // namespace zentrill
