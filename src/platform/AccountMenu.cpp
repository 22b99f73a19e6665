#include "platform/AccountMenu.h"

#include "platform/Paths.h"

namespace zentrill {

std::vector<std::string> accountMenuItems(const std::string& identifier, const std::string& homeDirectory,
                                          const std::string& dataHome) {
    std::string data = dataHome;
    if (!data.starts_with('/')) {
        if (homeDirectory.empty()) {
            return {};
        }
        data = paths::appending(homeDirectory, ".local/share");
    }
    return {
        paths::standardized(paths::appending(data, "applications/" + identifier + ".desktop")),
        paths::standardized(paths::appending(data, "icons/hicolor/scalable/apps/" + identifier + ".svg"))};
}

} // namespace zentrill
