#pragma once

#include "DeletionForm.h"
#include "deletion/SelfUninstallService.h"
#include "support/TemporaryHome.h"

#include <gtest/gtest.h>
#include <plist/plist.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace zentrill::test {

inline constexpr const char* bundleIdentifier = "com.user.Zentrill";
inline constexpr const char* notADirectChild =
    "Self-uninstall is limited to a direct child of an approved Applications directory.";

/// The property list of a bundle of that identifier.
inline std::string xmlInfo(const std::string& identifier) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist "
           "version=\"1.0\"><dict><key>CFBundleIdentifier</key>"
           "<string>" +
           identifier + "</string></dict></plist>";
}

/// The same in the binary form.
inline std::string binaryInfo(const std::string& identifier) {
    plist_t root = plist_new_dict();
    plist_dict_set_item(root, "CFBundleIdentifier", plist_new_string(identifier.c_str()));
    char* data = nullptr;
    std::uint32_t length = 0;
    plist_to_bin(root, &data, &length);
    plist_free(root);
    std::string info(data, length);
    plist_to_bin_free(data);
    return info;
}

/// A folder with an Applications folder and a home in it.
class SelfUninstallFixture : public testing::Test {
protected:
    SelfUninstallFixture() { folder.makeDirectory("Applications"); }

    std::string makeBundle(const std::string& relative = "Applications/Zentrill.app",
                           const std::string& info = xmlInfo(bundleIdentifier)) const {
        folder.makeFile(relative + "/Contents/Info.plist", info);
        folder.makeFile(relative + "/Contents/MacOS/Zentrill");
        return folder.path(relative);
    }

    /// Makes all five pieces of data, files inside the folders among them.
    std::vector<std::string> makeData() const {
        std::vector<std::string> data = service().ownedDataURLs(folder.path("home"));
        for (const std::string& path : data) {
            const std::string relative = path.substr(folder.path().size() + 1);
            folder.makeFile(path.ends_with(".plist") ? relative : relative + "/file");
        }
        return data;
    }

    [[nodiscard]] SelfUninstallService service(SafeDeletionEngine::DeletionPredicate mayRemove = {}) const {
        return SelfUninstallService(bundleIdentifier, std::vector{folder.path("Applications")},
                                    FileSystem::shared(),
                                    std::make_shared<SafeDeletionEngine>(newEngine(std::move(mayRemove))));
    }

    [[nodiscard]] SelfUninstallResult uninstall(const std::string& bundle) const {
        return service().uninstall(bundle, folder.path("home"));
    }

    /// Opens everything to the ordinary user; a test closes again what it wants closed.
    void openToAll() const {
        std::filesystem::permissions(folder.path(), std::filesystem::perms::all);
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path())) {
            std::filesystem::permissions(entry.path(), std::filesystem::perms::all);
        }
    }

    static void close(const std::string& path) {
        std::filesystem::permissions(path, std::filesystem::perms(0555));
    }

    TemporaryDirectory folder;
};

} // namespace zentrill::test
