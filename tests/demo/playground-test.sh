#!/usr/bin/env bash
# Tests of the playground: playground-test.sh CASE FORM RUN.SH ZENTRILL.APP LAUNCHER. The form is what holds the walls,
# by the launcher's names: namespaces, landlock, user or none. Ends with 77 where it cannot be had.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
case_name=$1 form=$2 run=$3 application=$4 confine=$5
export ZENTRILL_CONFINEMENT=$form

skip() {
    echo "SKIPPED: $*"
    exit 77
}

if [ "$form" = namespaces ]; then
    applications_inside=/Applications tools_inside=/usr/local/bin
else
    # shellcheck disable=SC2016  # for the shell inside
    applications_inside='$HOME/Applications' tools_inside='$HOME/.local/bin'
fi

scratch=$(mktemp -d)
mkdir "$scratch/tmp"
chmod 0711 "$scratch"
# Not below /tmp, which some walls hide anyway.
outside=$(mktemp -d /var/tmp/zentrill-outside.XXXXXX 2>/dev/null ||
    mktemp -d "$(dirname "$application")/zentrill-outside.XXXXXX")
chmod 0755 "$outside"
mkdir "$outside/home"
export TMPDIR=$scratch/tmp HOME=$outside/home
# In a file, lest whoever looks for it finds himself.
echo "${scratch##*/}/tmp/zentrill-demo" >"$scratch/pattern"
unset WAYLAND_DISPLAY XAUTHORITY
server='' program='' engine=''

# shellcheck disable=SC2317  # called by the trap
clean_up() {
    local id
    for id in $program $server $engine; do
        kill "$id" 2>/dev/null || true
        wait "$id" || true
    done
    rm -rf "$scratch" "$outside"
}
trap clean_up EXIT

fail() {
    echo "FAILED: $*" >&2
    if [ -f "$scratch/said" ]; then cat "$scratch/said" >&2; fi
    exit 1
}

# eventually WHAT COMMAND...: waits half a minute at most.
eventually() {
    local what=$1 tries
    shift
    for ((tries = 0; tries < 300; tries++)); do
        if "$@"; then return; fi
        sleep 0.1
    done
    fail "$what"
}

playground() { "$run" --confine "$confine" "$@" 2>"$scratch/said"; }

inside() { playground "$application" sh -euc "$1"; }

nothing_is_left() { [ -z "$(ls -A "$TMPDIR")" ]; }

open_window() {
    # Not the first free number: a server that ends takes the socket of the next one on its number with it. And not
    # one that resets itself when its last client leaves: it would refuse who comes meanwhile.
    Xvfb ":$((RANDOM + 1000))" -displayfd 3 -screen 0 1280x900x24 -nolisten tcp -noreset 3>"$scratch/display" >/dev/null 2>&1 &
    server=$!
    eventually "Xvfb does not start" test -s "$scratch/display"
    DISPLAY=:$(cat "$scratch/display")
    export DISPLAY QT_QPA_PLATFORM=xcb
    # A shell's background jobs ignore the interrupt key unless told otherwise.
    env --default-signal=INT "$run" --confine "$confine" "$application" 2>"$scratch/said" &
    program=$!
    eventually "the window does not come" window_is_there
}

window_is_there() { xdotool search --name '^Zentrill - Environment Cleaner$' >"$scratch/window" 2>/dev/null; }

# close_window NUMBER: what a window manager does.
close_window() {
    PYTHONPATH=$here/../e2e python3 -B -c "import sys
from harness.x11 import ask_to_close
ask_to_close('$DISPLAY', int(sys.argv[1]))" "$1"
}

# The processes of the playground, which hold its folder in their arguments or in their mounts.
processes_of_playground() { grep -lsFf "$scratch/pattern" /proc/[0-9]*/mountinfo /proc/[0-9]*/cmdline || true; }

no_process_is_left() { [ -z "$(processes_of_playground)" ]; }

no_control_group_is_left() {
    local name
    name=$(grep -om1 'zentrill-demo\.[[:alnum:]]*' "$scratch/said")
    [ -z "$(find /sys/fs/cgroup -maxdepth 2 -name "$name")" ]
}

has_ended() { ! kill -0 "$program" 2>/dev/null; }

ends_with() {
    local status=0
    eventually "it does not end" has_ended
    wait "$program" || status=$?
    program=''
    [ "$status" -eq "$1" ] || fail "it ended with $status instead of $1"
}

# A shell's words for every way in which something outside could be changed; each has to be refused.
attempts() {
    cat <<'ATTEMPTS'
attempt() { if "$@" 2>/dev/null; then echo "not refused: $*" >&2 && exit 1; fi; }
write() { echo not mine >"$1"; }
append() { echo not mine >>"$1"; }
echo not mine >~/other
ln -s "$outside/letter" ~/way-out
attempt rm -f "$outside/letter"
attempt rmdir "$outside/empty"
attempt rm -rf "$outside/full"
attempt mv "$outside/letter" "$outside/renamed"
attempt mv "$outside/letter" ~/taken
attempt mv -f ~/other "$outside/letter"
attempt cp --remove-destination ~/other "$outside/letter"
attempt truncate -s 0 "$outside/letter"
attempt dd if=/dev/zero of="$outside/letter" bs=1 count=1 conv=notrunc
attempt write "$outside/letter"
attempt write ~/way-out
attempt append "$outside/letter"
attempt ln "$outside/letter" ~/second-name
attempt ln ~/other "$outside/second-name"
attempt ln -s ~/other "$outside/second-name"
attempt touch "$outside/new"
attempt mkdir "$outside/new"
attempt mkfifo "$outside/new"
cat "$outside/letter"
ATTEMPTS
}

# What nobody may have changed, with the times of every change.
state_outside() { find "$outside" -printf '%p %i %m %u %s %T@ %C@ %l\n' | sort && cat "$outside/letter"; }

case_walls() {
    local where before
    mkdir "$outside/empty" "$outside/full"
    export OLLAMA_HOST=http://outside:11434 NPM_CONFIG_PREFIX=$outside
    echo mine | tee "$HOME/letter" "$outside/letter" "$outside/full/letter" >/dev/null
    before=$(state_outside)
    where=$(inside "
        test ~ != '$HOME'
        if env | grep -e '$outside' -e //outside >&2; then exit 1; fi
        if [ $form = namespaces ]; then
            test ! -e '$HOME/letter'
            for folder in / /etc /usr /usr/local /var; do test ! -w \$folder; done
        fi
        outside='$outside'
        $(attempts)
        rm -r $applications_inside/Claude.app ~/Documents $tools_inside/codex
        ls ~ $applications_inside $tools_inside") || fail "a wall has a hole"
    case $where in *mine*) ;; *) fail "the rest of the machine cannot be read" ;; esac
    case $where in *Claude.app* | *Documents* | *codex*) fail "a sample cannot be removed" ;; esac
    [ "$(state_outside)" = "$before" ] || fail "something was changed outside: $(state_outside)"
    eventually "the samples are left behind" nothing_is_left
}

case_samples() {
    local said
    said=$(inside '
        find ~ -name "*.gguf" -size +4000000000c
        test -L ~/.local/bin/claude
        ollama list
        ollama rm llama3.1:8b
        ollama list
        ps -axo comm,args=
        du -sk ~') || fail "the samples cannot be used"
    [ "$(grep -c '\.gguf$' <<<"$said")" -eq 2 ] || fail "the model files are not of their size: $said"
    [ "$(grep -c '^llama3.1:8b' <<<"$said")" -eq 1 ] || fail "the stand-in for ollama does not remove: $said"
    grep -q 'stand-in for Ollama' <<<"$said" || fail "the stand-in does not say what it is: $said"
    grep -q 'Hermes Helper' <<<"$said" || fail "no tool runs: $said"
    # Elsewhere it is the machine's own processes that are listed.
    if [ "$form" = namespaces ] && grep -q -e Claude -e codex <<<"$said"; then
        fail "a tool that does not run seems to: $said"
    fi
    [ "$(tail -n 1 <<<"$said" | cut -f1)" -lt 102400 ] || fail "the samples take space: $said"
}

case_docker_engine() {
    local said
    [ "$(id -u)" -eq 0 ] || skip "a private engine needs root"
    command -v dockerd >/dev/null || skip "there is no Docker Engine here"
    # Everything that it takes may be there, and the machine refuse it all the same.
    inside true || fail "it does not run"
    if grep -q 'no engine can run here' "$scratch/said"; then skip "$(grep -o 'no engine can run here.*' "$scratch/said")"; fi
    said=$(inside '
        docker version --format "engine {{.Server.Version}}"
        docker container ls -a --format "{{.Names}}={{.State}}"
        docker container stop open-webui
        docker container rm open-webui
        docker image rm ghcr.io/open-webui/open-webui:main
        docker image ls --format "{{.Repository}} {{.Size}}"') || fail "the engine cannot be used"
    grep -q '^engine [1-9]' <<<"$said" || fail "not an engine: $said"
    grep -q '^open-webui=running$' <<<"$said" || fail "no container runs: $said"
    grep -q '^postgres 27[0-9]MB$' <<<"$said" || fail "the sizes do not look real: $said"
    if grep -q '^ghcr.io' <<<"$said"; then fail "the image is still there: $said"; fi
    no_control_group_is_left || fail "control groups are left behind"
}

# Stands where the person's own engine would, and notes who comes.
start_engine_outside() {
    python3 -c "import socket, sys
listener = socket.socket(socket.AF_UNIX)
listener.bind(sys.argv[1])
listener.listen()
open(sys.argv[2], 'w').close()
while True:
    listener.accept()
    open(sys.argv[3], 'w').close()" "$outside/engine" "$scratch/listens" "$scratch/visited" &
    engine=$!
    eventually "no engine listens" test -e "$scratch/listens"
    export DOCKER_HOST=unix://$outside/engine
}

case_docker_stand_in() {
    local said as=()
    command -v python3 >/dev/null || skip "python3 is not installed"
    start_engine_outside
    # Nobody in particular, who cannot have an engine of his own.
    if [ "$form" = namespaces ] && [ "$(id -u)" -eq 0 ]; then
        cp -R "$application" "$scratch/"
        application=$scratch/$(basename "$application")
        chown -R 65534:65534 "$scratch"
        cp -R "$(dirname "$run")" "$scratch/playground"
        run=$scratch/playground/run.sh
        as=(setpriv --reuid 65534 --regid 65534 --clear-groups)
        "${as[@]}" "$run" --walls "$application" >/dev/null 2>&1 || skip "an ordinary user has no namespaces here"
    fi
    # shellcheck disable=SC2016  # for the shell inside
    said=$("${as[@]}" "$run" --confine "$confine" "$application" sh -euc '
        docker container ls -a --no-trunc --format "{{json .}}"
        id=$(docker container ls -a | sed -n "s/.*\"ID\":\"\([0-9a-f]*\)\",\"Names\":\"open-webui\".*/\1/p")
        ! docker container rm "$id"
        docker container stop "$id"
        docker container rm "$id"
        echo ---
        docker --context playground container ls -a
        docker image ls
        # The real tool, wherever it is: it must not find the way to an engine outside.
        for tool in /usr/bin/docker /usr/local/bin/docker /opt/homebrew/bin/docker; do
            if [ -x "$tool" ] && ! grep -q "stand-in" "$tool" && "$tool" container ls >&2; then echo "$tool works"; fi
        done' 2>"$scratch/said") || fail "the stand-in cannot be used"
    [ "$(grep -c 'stand-in, not Docker' <<<"$said")" -eq 11 ] || fail "not every line says what it is: $said"
    if sed '1,/---/d' <<<"$said" | grep -q '"Names":"open-webui"'; then fail "the container is still there: $said"; fi
    if grep -q ' works$' <<<"$said"; then fail "an engine outside can be reached: $said"; fi
    [ ! -e "$scratch/visited" ] || fail "somebody came to the engine outside"
    eventually "the samples are left behind" nothing_is_left
}

case_window() {
    open_window
    grep -q 'nothing that you remove in this window is real' "$scratch/said" || fail "it does not say what it is"
    grep -q "sample home  *$TMPDIR/zentrill-demo" "$scratch/said" || fail "it does not say where the samples are"
    close_window "$(head -n 1 "$scratch/window")"
    ends_with 0
    nothing_is_left || fail "the samples are left behind"
    no_process_is_left || fail "left running: $(processes_of_playground)"
}

case_interrupted() {
    local signal
    for signal in INT:130 TERM:143 HUP:129; do
        open_window
        [ -n "$(processes_of_playground)" ] || fail "its processes cannot be told"
        kill -s "${signal%:*}" "$program"
        ends_with "${signal#*:}"
        nothing_is_left || fail "the samples are left behind after $signal"
        eventually "processes are left running after $signal" no_process_is_left
        kill "$server"
        wait "$server" || true
        server=''
        : >"$scratch/display"
    done
}

case_killed() {
    open_window
    kill -KILL "$program"
    ends_with 137
    eventually "the samples are left behind" nothing_is_left
    no_control_group_is_left || fail "control groups are left behind"
    eventually "processes are left running" no_process_is_left
}

case_kept() {
    playground --keep "$application" true || fail "it does not run"
    [ -f "$(echo "$TMPDIR"/zentrill-demo.*/home/Documents/letter.txt)" ] || fail "the samples are gone"
    eventually "processes are left running" no_process_is_left
}

# What a tour of the playground leaves: pictures, and a home from which a tool has gone.
case_tour() {
    local tool home pictures=$scratch/pictures
    for tool in Xvfb dbus-daemon xdotool import; do
        command -v "$tool" >/dev/null || skip "$tool is not installed"
    done
    getent passwd "$(id -u)" >/dev/null || skip "a user without a name gets no bus"
    /usr/bin/python3 -c 'import gi; gi.require_version("Atspi", "2.0")' 2>/dev/null || skip "no accessibility bindings"
    "$(dirname "$run")/tour.py" "$pictures" "$run" --keep --confine "$confine" "$application" 2>"$scratch/said" ||
        fail "the tour does not come to its end"
    for tool in applications models docker console confirmation result; do
        grep -q "  $pictures/$tool.png  " "$scratch/said" || fail "it does not say where the picture is: $tool"
        identify "$pictures/$tool.png" | grep -q ' PNG 950x700 ' || fail "not a picture of the window: $tool"
    done
    [ "$(sha256sum "$pictures"/*.png | cut -d' ' -f1 | sort -u | wc -l)" -eq 6 ] || fail "pictures are of the same"
    home=$(echo "$TMPDIR"/zentrill-demo.*/home)
    [ "$(find "$home/.gemini" -mindepth 1 -printf '%f\n' | sort | xargs)" = 'oauth_creds.json settings.json' ] ||
        fail "not exactly the credentials are kept: $(find "$home/.gemini")"
    [ -z "$(find "$home" "$home/../bin" -name gemini 2>/dev/null)" ] || fail "the tool is still there"
    [ -f "$home/.codex/history.jsonl" ] || fail "more than the tool has gone"
    eventually "processes are left running" no_process_is_left
}

case_no_display() {
    local status=0
    mkdir "$scratch/bin"
    printf '#!/bin/sh\nexit 1\n' >"$scratch/bin/Xvfb"
    chmod +x "$scratch/bin/Xvfb"
    PATH=$scratch/bin:$PATH "$(dirname "$run")/tour.py" "$scratch/pictures" "$run" --confine "$confine" "$application" \
        2>"$scratch/said" || status=$?
    [ "$status" -eq 1 ] || fail "it ended with $status"
    [ "$(wc -l <"$scratch/said")" -eq 1 ] || fail "it takes more than a sentence"
    grep -q '^demo: no virtual display can be had: ' "$scratch/said" || fail "it does not say what is missing"
    nothing_is_left || fail "something is left behind: $(ls "$TMPDIR")"
}

case_refused() {
    local status=0
    playground "$application" touch "$scratch/ran" || status=$?
    [ "$status" -eq 77 ] || fail "it ended with $status"
    [ ! -e "$scratch/ran" ] || fail "it runs without walls"
    [ "$(wc -l <"$scratch/said")" -eq 1 ] || fail "it takes more than a sentence"
    nothing_is_left || fail "the samples are left behind"
}

if [ "$form" != none ]; then
    found=$("$run" --walls --confine "$confine" "$application" 2>&1) || skip "$found"
    [ "$found" = "$form" ] || fail "the walls are held by $found"
fi
"case_$case_name"
