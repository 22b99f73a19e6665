#!/usr/bin/env bash
# A playground: the program over a sample home, sample applications and sample Docker objects, in a root of its
# own in which nothing else can be written to.
set -euo pipefail

usage() {
    cat <<'USAGE'
Usage: run.sh [--keep] ZENTRILL.APP [COMMAND [ARGUMENT ...]]

Opens the window of the application over samples, or runs COMMAND in the same surroundings. --keep leaves the
samples behind.
USAGE
}

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
# shellcheck source=packaging/demo/sample-home.sh
. "$here/sample-home.sh"
# shellcheck source=packaging/demo/sample-docker.sh
. "$here/sample-docker.sh"
# shellcheck source=packaging/demo/cage.sh
. "$here/cage.sh"

say() { printf '%s\n' "$*" >&2; }

die() {
    say "demo: $*"
    exit 1
}

describe() {
    say "A playground: nothing that you remove in this window is real."
    say "  sample home          $playground/home (in the window: $cage_home)"
    say "  sample applications  $playground/applications (in the window: /Applications)"
    say "  sample tools         $playground/bin (in the window: /usr/local/bin)"
    say "  Docker               $docker_description"
    say "  The rest of the machine is read-only in there, and your home folder is not there at all."
    say "  Hermes pretends to run, so that a refusal can be seen. This quits it: rm $playground/home/$running_tool_mark"
    if [ "$keep" = yes ]; then
        say "  The samples stay when the window closes. This removes them: rm -r $playground"
    else
        say "  All of this is removed when the window closes."
    fi
}

# The folder goes as soon as the last process that holds the pipe has ended, in whatever way it ended.
remove_at_the_end() {
    exec {alive}> >(
        trap '' HUP INT TERM
        cat >/dev/null
        remove_control_groups
        rm -rf "$playground"
    )
    remover=$!
}

program=''
# shellcheck disable=SC2317  # called by the trap
finish() {
    trap '' HUP INT TERM
    if [ -n "$program" ]; then
        kill -KILL "$program" 2>/dev/null || true
        wait "$program" 2>/dev/null || true
    fi
    stop_sample_engine
    if [ "$keep" = no ]; then
        exec {alive}>&-
        wait "$remover" || true
    fi
}

keep=no
while [ $# -gt 0 ]; do
    case $1 in
    --keep) keep=yes ;;
    -h | --help) usage && exit ;;
    -*) usage >&2 && exit 2 ;;
    *) break ;;
    esac
    shift
done
[ $# -ge 1 ] || { usage >&2 && exit 2; }
application=$1
shift
[ -d "$application" ] || die "there is no application at $application"
[ "$(uname)" = Linux ] || die "the playground needs Linux: its walls are made by bubblewrap"
require_cage

playground=$(mktemp -d "${TMPDIR:-/tmp}/zentrill-demo.XXXXXX")
if [ "$keep" = no ]; then remove_at_the_end; fi
trap finish EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM

mkdir "$playground"/{home,applications,bin}
make_sample_home "$playground/home" "$playground/applications" "$playground/bin"
mkdir -p "$playground/home/Applications"
cp -R "$application" "$playground/home/Applications/Zentrill.app"
make_sample_docker
describe
if [ $# -eq 0 ]; then set -- "$cage_home/Applications/Zentrill.app/Contents/MacOS/Zentrill"; fi
# In the background, because a signal to this script is only handled while it waits by itself.
run_in_cage "$@" <&0 &
program=$!
status=0
wait "$program" || status=$?
program=''
exit "$status"
