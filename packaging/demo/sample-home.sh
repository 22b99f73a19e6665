# shellcheck shell=bash disable=SC2154  # variables that run.sh and these files share
# The samples on disk: tools with their data, some with nothing but data left, and models that take no space.

running_tool='/Applications/Hermes.app/Contents/MacOS/Hermes Helper'
# While this file of the home exists, the tool runs.
running_tool_mark=.hermes/gateway.pid

# put FILE [TEXT]
put() {
    mkdir -p "$(dirname "$1")"
    printf '%s\n' "${2:-}" >"$1"
}

# hole FILE BYTES: a file of that size that takes no space.
hole() {
    mkdir -p "$(dirname "$1")"
    truncate -s "$2" "$1"
}

# tool FILE NAME
tool() {
    put "$1" "#!/bin/sh
echo '$2: a sample of the playground, not the real tool'"
    chmod +x "$1"
}

# bundle NAME IDENTIFIER BYTES
bundle() {
    local folder=$applications/$1.app/Contents
    put "$folder/Info.plist" "<?xml version=\"1.0\" encoding=\"UTF-8\"?>
<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>$2</string></dict></plist>"
    tool "$folder/MacOS/$1" "$1"
    hole "$folder/Resources/app.asar" "$3"
}

digest() { printf %s "$1" | sha256sum | cut -d' ' -f1; }

# ollama_model NAME TAG BYTES
ollama_model() {
    local store=$home/.ollama/models config weights
    config=$(digest "$1:$2 config")
    weights=$(digest "$1:$2 weights")
    put "$store/manifests/registry.ollama.ai/library/$1/$2" "{\"schemaVersion\":2,\
\"config\":{\"digest\":\"sha256:$config\",\"size\":487},\
\"layers\":[{\"mediaType\":\"application/vnd.ollama.image.model\",\"digest\":\"sha256:$weights\",\"size\":$3}]}"
    hole "$store/blobs/sha256-$config" 487
    hole "$store/blobs/sha256-$weights" "$3"
}

# hub_model OWNER NAME BYTES...: each of the sizes is one file of weights.
hub_model() {
    local folder=$home/.cache/huggingface/hub/models--$1--$2 revision blob number=0 count=$(($# - 2)) bytes name
    revision=$(digest "$1/$2" | cut -c1-40)
    put "$folder/refs/main" "$revision"
    mkdir -p "$folder/snapshots/$revision"
    put "$folder/blobs/$(digest "$1/$2 config" | cut -c1-40)" '{"model_type":"sample"}'
    ln -s "../../blobs/$(digest "$1/$2 config" | cut -c1-40)" "$folder/snapshots/$revision/config.json"
    for bytes in "${@:3}"; do
        number=$((number + 1))
        blob=$(digest "$1/$2 $number")
        hole "$folder/blobs/$blob" "$bytes"
        printf -v name 'model-%05d-of-%05d.safetensors' "$number" "$count"
        ln -s "../../blobs/$blob" "$folder/snapshots/$revision/$name"
    done
}

make_models() {
    ollama_model llama3.1 8b 4661211424
    ollama_model qwen2.5-coder 14b 8988110784
    ollama_model nomic-embed-text latest 274290656
    hub_model mistralai Mistral-7B-Instruct-v0.3 4949453792 4999819336 4546807800
    hub_model sentence-transformers all-MiniLM-L6-v2 90868376
    hole "$home/.lmstudio/models/lmstudio-community/gemma-2-9b-it-GGUF/gemma-2-9b-it-Q4_K_M.gguf" 5761057728
    hole "$home/.lmstudio/models/lmstudio-community/Phi-3.5-mini-instruct-GGUF/Phi-3.5-mini-instruct-Q8_0.gguf" 4061222688
}

make_desktop_tools() {
    local support=$home/Library/Application\ Support library=$home/Library
    bundle Claude com.anthropic.claudefordesktop 41943040
    put "$support/Claude/claude_desktop_config.json" '{"mcpServers":{}}'
    put "$support/Claude/config.json" '{"oauth:tokenCache":"sample, not a token"}'
    hole "$library/Caches/com.anthropic.claudefordesktop/Cache.db" 18874368
    put "$library/Preferences/com.anthropic.claudefordesktop.plist" '<plist version="1.0"><dict/></plist>'

    bundle ChatGPT com.openai.chat 62914560
    put "$support/com.openai.chat/conversations-v3/index.json" '{"conversations":[]}'
    hole "$library/Caches/com.openai.chat/Cache.db" 9437184

    bundle 'LM Studio' ai.elementlabs.lmstudio 104857600
    put "$home/.lmstudio/settings.json" '{"language":"en"}'
    put "$support/LM Studio/window-state.json" '{}'

    bundle VendorApp com.vendor.app 1048576
    put "$support/VendorApp/settings.json" '{"licence":"sample"}'
    put "$support/VendorApp/recent.json" '[]'
    hole "$library/Caches/com.vendor.app/thumbnails.db" 2097152
}

make_command_line_tools() {
    local claude=$home/.local/share/claude/versions/2.0.31
    tool "$claude" 'claude'
    mkdir -p "$home/.local/bin"
    ln -s ../share/claude/versions/2.0.31 "$home/.local/bin/claude"
    put "$home/.claude/.credentials.json" '{"claudeAiOauth":{"accessToken":"sample, not a token"}}'
    put "$home/.claude/settings.json" '{"model":"opus"}'
    put "$home/.claude/projects/-home-sam-garden/2f1b.jsonl" '{"type":"user","message":"water the tomatoes"}'
    put "$home/.claude/todos/2f1b.json" '[]'

    tool "$bin/codex" codex
    put "$home/.codex/auth.json" '{"OPENAI_API_KEY":"sample, not a key"}'
    put "$home/.codex/config.toml" 'model = "gpt-5-codex"'
    put "$home/.codex/history.jsonl" '{"text":"tidy the shed"}'
    mkdir -p "$home/.codex/sessions/2026/10"

    tool "$bin/gemini" gemini
    put "$home/.gemini/oauth_creds.json" '{"refresh_token":"sample, not a token"}'
    put "$home/.gemini/settings.json" '{"theme":"Default"}'
    mkdir -p "$home/.gemini/tmp"

    # Tools that are gone, with what they left behind.
    put "$home/.opencode/auth.json" '{"key":"sample, not a key"}'
    put "$home/.opencode/package.json" '{"dependencies":{}}'
    put "$home/.openrouter/credentials" 'sample, not a key'
    hole "$home/.cache/vllm/torch_compile_cache/5ab3/rank_0_0/computation_graph.bin" 7340032
}

make_running_tool() {
    bundle Hermes ai.hermes.desktop 20971520
    put "$applications/${running_tool#/Applications/}" "#!/bin/sh
# Stands for a tool that runs, until the window closes that it was started beside.
while [ -e ~/$running_tool_mark ] && kill -0 \$BESIDE 2>/dev/null; do sleep 0.5; done"
    chmod +x "$applications/${running_tool#/Applications/}"
    put "$home/$running_tool_mark" 4711
    put "$home/.hermes/.env" 'HERMES_TOKEN=sample, not a token'
    put "$home/.hermes/memories/garden.md" 'The tomatoes stand in the south.'
    put "$home/.hermes/hermes-agent/pyproject.toml" '[project]'
    tool "$home/.local/bin/hermes" hermes
}

make_ollama() {
    cp "$here/stand-ins/ollama.sh" "$bin/ollama"
    chmod +x "$bin/ollama"
    put "$home/.ollama/history" 'why is the sky blue?'
    put "$home/.ollama/id_ed25519.pub" 'ssh-ed25519 sample, not a key'
}

# What no tool of the catalog owns: it must be there afterwards as well.
make_belongings() {
    put "$home/Documents/letter.txt" 'Dear Ada,'
    put "$home/.ssh/id_ed25519" 'sample, not a key'
    put "$home/Library/Preferences/com.apple.finder.plist" '<plist version="1.0"><dict/></plist>'
}

# As if the home had been lived in for half a year.
age() {
    local file days=3
    find "$@" -depth -print0 | while IFS= read -r -d '' file; do
        days=$(((days * 7 + 11) % 181))
        touch -h -d "$days days ago" "$file"
    done
}

# make_sample_home HOME APPLICATIONS BIN
make_sample_home() {
    local home=$1 applications=$2 bin=$3
    make_ollama
    make_models
    make_desktop_tools
    make_command_line_tools
    make_running_tool
    make_belongings
    age "$home" "$applications" "$bin"
}
