#!/usr/bin/env bash
# Tests of the playground: playground-test.sh CASE RUN.SH ZENTRILL.APP. Ends with 77 where no playground can be had.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
case_name=$1 run=$2 application=$3

scratch=$(mktemp -d)
mkdir "$scratch/tmp"
# Not below /tmp, which the playground hides anyway.
outside=$(mktemp -d /var/tmp/zentrill-outside.XXXXXX)
mkdir "$outside/home"
export TMPDIR=$scratch/tmp HOME=$outside/home
# In a file, lest whoever looks for it finds himself.
echo "$TMPDIR/zentrill-demo" >"$scratch/pattern"
unset WAYLAND_DISPLAY XAUTHORITY
server='' program=''
trap 'for id in $program $server; do kill "$id" 2>/dev/null || true; wait "$id" || true; done
    rm -rf "$scratch" "$outside"' EXIT

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

inside() { "$run" "$application" sh -euc "$1" 2>"$scratch/said"; }

nothing_is_left() { [ -z "$(ls -A "$TMPDIR")" ]; }

open_window() {
    # Not the first free number: a server that ends takes the socket of the next one on its number with it.
    Xvfb ":$((RANDOM + 1000))" -displayfd 3 -screen 0 1280x900x24 -nolisten tcp 3>"$scratch/display" >/dev/null 2>&1 &
    server=$!
    eventually "Xvfb does not start" test -s "$scratch/display"
    DISPLAY=:$(cat "$scratch/display")
    export DISPLAY QT_QPA_PLATFORM=xcb
    # A shell's background jobs ignore the interrupt key unless told otherwise.
    env --default-signal=INT "$run" "$application" 2>"$scratch/said" &
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

case_walls() {
    local where
    echo mine >"$HOME/letter"
    echo mine >"$outside/letter"
    where=$(inside "
        test ! -e '$HOME/letter'
        ! rm -f '$outside/letter' 2>/dev/null
        ! touch '$outside/new' 2>/dev/null
        for folder in / /etc /usr /usr/local /var; do test ! -w \$folder; done
        cat '$outside/letter'
        rm -r /Applications/Claude.app ~/Documents /usr/local/bin/codex
        ls ~ /Applications /usr/local/bin") || fail "a wall has a hole"
    case $where in *mine*) ;; *) fail "the rest of the machine cannot be read" ;; esac
    case $where in *Claude.app* | *Documents* | *codex*) fail "a sample cannot be removed" ;; esac
    [ "$(cat "$HOME/letter" "$outside/letter")" = $'mine\nmine' ] || fail "a removal reached outside"
    [ "$(find "$outside" -type f | wc -l)" -eq 2 ] || fail "something was written outside"
    nothing_is_left || fail "the samples are left behind"
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
    if grep -q -e Claude -e codex <<<"$said"; then fail "a tool that does not run seems to: $said"; fi
    [ "$(tail -n 1 <<<"$said" | cut -f1)" -lt 102400 ] || fail "the samples take space: $said"
}

case_docker_engine() {
    local said
    if [ "$(id -u)" -ne 0 ] || ! command -v dockerd >/dev/null; then exit 77; fi
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

case_docker_stand_in() {
    local said id
    command -v setpriv >/dev/null || exit 77
    # Nobody in particular, who cannot have an engine.
    if [ "$(id -u)" -eq 0 ]; then
        cp -R "$application" "$scratch/"
        application=$scratch/$(basename "$application")
        chown -R 65534:65534 "$scratch"
        cp -R "$(dirname "$run")" "$scratch/playground"
        run=$scratch/playground/run.sh
        as=(setpriv --reuid 65534 --regid 65534 --clear-groups)
    else
        as=()
    fi
    # shellcheck disable=SC2016  # for the shell inside
    said=$("${as[@]}" "$run" "$application" sh -euc '
        docker container ls -a --no-trunc --format "{{json .}}"
        id=$(docker container ls -a | sed -n "s/.*\"ID\":\"\([0-9a-f]*\)\",\"Names\":\"open-webui\".*/\1/p")
        ! docker container rm "$id"
        docker container stop "$id"
        docker container rm "$id"
        echo ---
        docker --context playground container ls -a
        docker image ls' 2>"$scratch/said") || fail "the stand-in cannot be used"
    [ "$(grep -c 'stand-in, not Docker' <<<"$said")" -eq 11 ] || fail "not every line says what it is: $said"
    if sed '1,/---/d' <<<"$said" | grep -q '"Names":"open-webui"'; then fail "the container is still there: $said"; fi
    nothing_is_left || fail "the samples are left behind"
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
    "$run" --keep "$application" true 2>"$scratch/said" || fail "it does not run"
    [ -f "$(echo "$TMPDIR"/zentrill-demo.*/home/Documents/letter.txt)" ] || fail "the samples are gone"
    no_process_is_left || fail "left running: $(processes_of_playground)"
}

command -v bwrap >/dev/null && bwrap --unshare-user-try --unshare-pid --ro-bind / / true || exit 77
"case_$case_name"
