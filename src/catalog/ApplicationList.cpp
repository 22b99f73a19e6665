#include "catalog/ApplicationList.h"

#include "catalog/ApplicationDetectionRegistry.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>

namespace zentrill {

namespace {

struct Presentation {
    std::string_view name;
    std::string_view displayName;
    AppCategory category;
    std::string_view iconName;
    std::string_view description;
};

// NOLINTBEGIN(modernize-use-designated-initializers): a table is read by its columns
constexpr std::array presentations{
    Presentation{"Ollama", "Ollama", AppCategory::desktop, "circle.grid.3x3.fill",
                 "Local model runner for large language models"},
    Presentation{"VendorApp", "VendorApp", AppCategory::desktop, "shippingbox.fill",
                 "Synthetic third-party application used for uninstall testing"},
    Presentation{"Claude", "Claude (desktop)", AppCategory::desktop, "bubble.left.fill",
                 "Official Anthropic desktop assistant"},
    Presentation{"Claude Code", "Claude Code (CLI)", AppCategory::terminal, "terminal.fill",
                 "Official CLI agent by Anthropic"},
    Presentation{"ChatGPT", "ChatGPT", AppCategory::desktop, "message.and.waveform.fill",
                 "Official OpenAI desktop client"},
    Presentation{"LLM CLI", "LLM CLI", AppCategory::terminal, "chevron.left.forwardslash.chevron.right",
                 "CLI utility for running and managing models (by Marrowby)"},
    Presentation{"vLLM", "vLLM", AppCategory::terminal, "cpu", "Fast Python-based engine for LLM inference"},
    Presentation{"OpenCode / VSCodium", "OpenCode / VSCodium", AppCategory::desktop, "code.square.fill",
                 "Open-source codebase editor based on VS Code"},
    Presentation{"OpenCode CLI", "OpenCode CLI", AppCategory::terminal, "terminal.fill",
                 "OpenCode command-line interface for AI coding"},
    Presentation{"OpenAI CLI / Python", "OpenAI CLI / Python", AppCategory::terminal, "brain.head.profile",
                 "Official OpenAI libraries and command-line interfaces"},
    Presentation{"OpenRouter CLI", "OpenRouter CLI", AppCategory::terminal, "network",
                 "Helpers and settings for OpenRouter API integrations"},
    Presentation{"Hermes", "Hermes", AppCategory::desktop, "lightbulb.fill",
                 "Hermes Desktop application and command-line runners"},
    Presentation{"Gemini", "Gemini", AppCategory::desktop, "bolt.shield.fill",
                 "Gemini Desktop application and advanced command-line interfaces"},
    Presentation{"Codex Tooling", "Codex Tooling", AppCategory::terminal, "curlybraces",
                 "Extensions and workspace caches for OpenAI Codex"},
    Presentation{"LM Studio", "LM Studio", AppCategory::desktop, "cube.box.fill",
                 "Local model runner and model management UI"},
};

// NOLINTEND(modernize-use-designated-initializers)

AppInfo appInfo(const Presentation& presentation) {
    const ApplicationDetectionRule& rule = ApplicationDetectionRegistry::rule(presentation.name);
    return {
        .name = rule.name,
        .displayName = std::string(presentation.displayName),
        .description = std::string(presentation.description),
        .category = presentation.category,
        .iconName = std::string(presentation.iconName),
        .installedVia = rule.installedVia,
        .detectPaths = rule.installedPaths,
        .uninstallPaths = rule.uninstallPaths,
        .credentialPaths = rule.credentialPaths,
        .residualDataPaths = rule.residualDataPaths,
    };
}

} // namespace

std::vector<AppInfo> applicationList() {
    std::vector<AppInfo> apps;
    apps.reserve(presentations.size());
    std::ranges::transform(presentations, std::back_inserter(apps), appInfo);
    return apps;
}

} // namespace zentrill
