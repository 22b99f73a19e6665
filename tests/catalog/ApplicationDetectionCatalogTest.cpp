#include "catalog/ApplicationDetectionCatalog.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace zentrill {
namespace {

/// Every entry of every list of every tool. It stands here a second time, and not in the program's own shape,
/// because a wrong path would have another program's folder removed: whoever changes the catalog changes
/// both.
constexpr std::string_view expectedCatalog = R"(
Ollama
  installed  /Applications/Ollama.app
  installed  /usr/local/bin/ollama
  installed  /opt/homebrew/bin/ollama
  installed  ~/.local/bin/ollama
  residual   ~/.ollama
  residual   ~/Library/Application Support/Ollama
  uninstall  /Applications/Ollama.app
  uninstall  /usr/local/bin/ollama
  uninstall  /opt/homebrew/bin/ollama
  uninstall  ~/.local/bin/ollama
  uninstall  ~/.ollama
  uninstall  ~/Library/Application Support/Ollama
  uninstall  ~/Library/Caches/com.github.ollama
  uninstall  ~/Library/Preferences/com.github.ollama.plist
Claude
  installed  /Applications/Claude.app
  residual   ~/Library/Application Support/Claude
  uninstall  /Applications/Claude.app
  uninstall  ~/Library/Application Support/Claude
  uninstall  ~/Library/Caches/*claude*
  uninstall  ~/Library/Preferences/*claude*.plist
  uninstall  ~/Library/WebKit/*claude*
  credential ~/Library/Application Support/Claude
  process    Claude
Claude Code
  installed  /usr/local/bin/claude
  installed  /opt/homebrew/bin/claude
  installed  ~/.local/bin/claude
  residual   ~/.claude
  uninstall  /usr/local/bin/claude
  uninstall  /opt/homebrew/bin/claude
  uninstall  ~/.local/bin/claude
  uninstall  ~/.claude
  credential ~/.claude/.credentials.json
  process    claude
  via        npm global / manual install
ChatGPT
  installed  /Applications/ChatGPT.app
  residual   ~/Library/Application Support/com.openai.chat
  residual   ~/.codex
  uninstall  /Applications/ChatGPT.app
  uninstall  ~/Library/Caches/com.openai.chat
  uninstall  ~/Library/Preferences/com.openai.chat.plist
  uninstall  ~/.codex
  credential ~/Library/Application Support/com.openai.chat
  credential ~/.codex/auth.json
  credential ~/.codex/config.toml
  process    ChatGPT
  process    codex app-server
  process    Codex (Service)
  process    Codex (Renderer)
  process    SkyComputerUseService
LLM CLI
  installed  /usr/local/bin/llm
  installed  /opt/homebrew/bin/llm
  installed  ~/.local/bin/llm
  residual   ~/Library/Application Support/io.datasette.llm
  uninstall  /usr/local/bin/llm
  uninstall  /opt/homebrew/bin/llm
  uninstall  ~/.local/bin/llm
  uninstall  ~/Library/Application Support/io.datasette.llm/plugins.json
  uninstall  ~/Library/Application Support/io.datasette.llm/templates
  uninstall  ~/Library/Application Support/io.datasette.llm/logs.db
  credential ~/Library/Application Support/io.datasette.llm/keys.txt
vLLM
  installed  /usr/local/bin/vllm
  installed  /opt/homebrew/bin/vllm
  installed  ~/.local/bin/vllm
  residual   ~/.cache/vllm
  uninstall  /usr/local/bin/vllm
  uninstall  /opt/homebrew/bin/vllm
  uninstall  ~/.local/bin/vllm
  uninstall  ~/.cache/vllm
OpenCode / VSCodium
  installed  /Applications/OpenCode.app
  installed  /Applications/VSCodium.app
  residual   ~/Library/Application Support/VSCodium
  uninstall  /Applications/OpenCode.app
  uninstall  /Applications/VSCodium.app
  uninstall  ~/Library/Application Support/VSCodium
  uninstall  ~/Library/Caches/com.visualstudio.code.oss
  uninstall  ~/Library/Preferences/com.visualstudio.code.oss.plist
OpenCode CLI
  installed  /usr/local/bin/opencode
  installed  /opt/homebrew/bin/opencode
  installed  ~/.local/bin/opencode
  residual   ~/.opencode
  uninstall  /usr/local/bin/opencode
  uninstall  /opt/homebrew/bin/opencode
  uninstall  ~/.local/bin/opencode
  uninstall  ~/.opencode
  credential ~/.opencode/credentials
  credential ~/.opencode/auth.json
OpenAI CLI / Python
  installed  /usr/local/bin/openai
  installed  /opt/homebrew/bin/openai
  installed  ~/.local/bin/openai
  residual   ~/.openai
  uninstall  ~/.openai
  uninstall  /usr/local/bin/openai
  uninstall  /opt/homebrew/bin/openai
  uninstall  ~/.local/bin/openai
  credential ~/.openai/api_key
  credential ~/.openai/credentials
OpenRouter CLI
  installed  /usr/local/bin/openrouter
  installed  /opt/homebrew/bin/openrouter
  installed  ~/.local/bin/openrouter
  residual   ~/.openrouter
  uninstall  ~/.openrouter
  uninstall  /usr/local/bin/openrouter
  uninstall  /opt/homebrew/bin/openrouter
  uninstall  ~/.local/bin/openrouter
  credential ~/.openrouter/api_key
  credential ~/.openrouter/credentials
Hermes
  installed  /Applications/Hermes.app
  installed  ~/.local/bin/hermes
  installed  ~/.local/bin/hermes-acp
  installed  ~/.local/bin/hermes-agent
  installed  ~/.local/bin/exec-hermes01
  installed  ~/.local/bin/exec-q36-hermes01
  installed  ~/.hermes/hermes-agent/venv/bin/hermes
  residual   ~/.hermes
  residual   ~/Library/Application Support/Hermes
  uninstall  /Applications/Hermes.app
  uninstall  ~/.local/bin/hermes
  uninstall  ~/.local/bin/hermes-acp
  uninstall  ~/.local/bin/hermes-agent
  uninstall  ~/.local/bin/exec-hermes01
  uninstall  ~/.local/bin/exec-q36-hermes01
  uninstall  ~/.hermes/hermes-agent/venv/bin/hermes
  uninstall  ~/Library/LaunchAgents/ai.hermes.gateway.plist
  uninstall  ~/Library/Application Support/Hermes
  uninstall  ~/.hermes
  credential ~/.hermes/.env
  credential ~/.hermes/auth.json
  credential ~/.hermes/vault
  credential ~/.hermes/mcp-tokens
  credential ~/.hermes/memories
  process    hermes_cli.main
  process    hermes_kernel_runner.py
  process    mcp_death_supervisor.py
  process    Hermes Helper
  via        venv inside ~/.hermes + /Applications/Hermes.app
Gemini
  installed  /Applications/Gemini.app
  installed  /usr/local/bin/gemini
  installed  /opt/homebrew/bin/gemini
  installed  ~/.local/bin/gemini
  installed  ~/.local/bin/exec-gemini-38
  residual   ~/.gemini
  uninstall  /Applications/Gemini.app
  uninstall  /usr/local/bin/gemini
  uninstall  /opt/homebrew/bin/gemini
  uninstall  ~/.local/bin/gemini
  uninstall  ~/.local/bin/exec-gemini-38
  uninstall  ~/.gemini
  credential ~/.gemini/oauth_creds.json
  credential ~/.gemini/settings.json
Codex Tooling
  installed  /usr/local/bin/codex
  installed  /opt/homebrew/bin/codex
  installed  ~/.local/bin/codex
  residual   ~/.codex
  residual   ~/Library/Application Support/Codex
  uninstall  ~/.codex
  uninstall  /usr/local/bin/codex
  uninstall  /opt/homebrew/bin/codex
  uninstall  ~/.local/bin/codex
  uninstall  ~/Library/Application Support/Codex
  credential ~/.codex/auth.json
  credential ~/.codex/config.toml
  process    codex app-server
  process    Codex (Service)
  process    Codex (Renderer)
  process    SkyComputerUseService
  via        bundled with ChatGPT desktop app
LM Studio
  installed  /Applications/LM Studio.app
  residual   ~/.lmstudio
  residual   ~/Library/Application Support/LM Studio
  uninstall  /Applications/LM Studio.app
  uninstall  ~/.lmstudio
  uninstall  ~/Library/Application Support/LM Studio
VendorApp
  installed  /Applications/VendorApp.app
  residual   ~/Library/Application Support/VendorApp
  residual   ~/Library/Caches/com.vendor.app
  uninstall  /Applications/VendorApp.app
  uninstall  ~/Library/Application Support/VendorApp
  uninstall  ~/Library/Caches/com.vendor.app
  uninstall  ~/Library/Preferences/com.vendor.app.plist
  credential ~/Library/Application Support/VendorApp/settings.json
)";

class CatalogText {
public:
    void add(const ApplicationDetectionRule& rule) {
        text_ += rule.name + "\n";
        add("installed ", rule.installedPaths);
        add("residual  ", rule.residualDataPaths);
        add("uninstall ", rule.uninstallPaths);
        add("credential", rule.credentialPaths);
        add("process   ", rule.processNames);
        if (rule.installedVia) {
            add("via       ", {*rule.installedVia});
        }
    }

    [[nodiscard]] const std::string& text() const { return text_; }

private:
    void add(const std::string& list, const std::vector<std::string>& entries) {
        for (const std::string& entry : entries) {
            text_.append("  ").append(list).append(" ").append(entry).append("\n");
        }
    }

    std::string text_ = "\n";
};

TEST(ApplicationDetectionCatalog, HoldsWhatIsWrittenHereAndNothingElse) {
    CatalogText catalog;
    for (const ApplicationDetectionRule& rule : applicationDetectionCatalog()) {
        catalog.add(rule);
    }
    EXPECT_EQ(catalog.text(), expectedCatalog);
}

} // namespace
} // namespace zentrill
