#pragma once

#include "models/LocalModelScanner.h"
#include "platform/FileSystem.h"
#include "support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zentrill::test {

inline constexpr std::string_view ollamaLibrary = ".ollama/models/manifests/registry.ollama.ai/library/";

inline std::vector<std::string> listed(const std::string& folder) {
    return FileSystem::shared().entryNames(folder).value_or(std::vector<std::string>());
}

inline std::string joined(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts) {
        text += part;
    }
    return text;
}

inline std::vector<std::string> names(const std::vector<LocalModel>& models) {
    std::vector<std::string> result;
    result.reserve(models.size());
    for (const LocalModel& model : models) {
        result.push_back(model.name);
    }
    return result;
}

/// A home folder, and the lines that a scan of it logs.
class LocalModelScannerFixture : public testing::Test {
protected:
    [[nodiscard]] LocalModelScanner scanner(LocalModelScanner::StopRequest shouldStop = {}) {
        return {home.path(), [this](std::string line) { log.push_back(std::move(line)); },
                std::move(shouldStop)};
    }

    void makeManifest(std::string_view rest) const {
        home.makeFile(std::string(ollamaLibrary).append(rest),
                      R"({"config":{"size":"512"},"layers":[{"size":1000},{"size":2000}]})");
    }

    TemporaryHome home;
    std::vector<std::string> log;
};

} // namespace zentrill::test
